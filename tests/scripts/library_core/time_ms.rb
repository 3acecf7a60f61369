# The clock is an integer and never runs backwards.
start = time_ms()
puts(type_of(start))  #=> integer
i = 0
backwards = false
last = start
while i < 1000
  now = time_ms()
  if now < last
    backwards = true
  end
  last = now
  i = i + 1
end
puts(backwards)  #=> false
puts(last - start < 60000)  #=> true
