i = 0
while i < 3 do
  puts(i)
  i = i + 1
end
while false end
