# No other byte counts as white space.
count = 0
i = 0
while i < 256
  if string_strip(string_char(i)) == ""
    count = count + 1
  end
  i = i + 1
end
puts(count)  #=> 6
