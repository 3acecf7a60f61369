i = 9223372036854775805
turns = 0
while i > 0 do
  i = i + 1
  turns = turns + 1
end
puts(turns, i)
def down()
  n = -9223372036854775807
  turns = 0
  while n < 0 do
    n = n - 1
    turns = turns + 1
  end
  return [turns, n]
end
puts(down())
