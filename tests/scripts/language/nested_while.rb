i = 1
while i <= 3 do
  j = 1
  line = ""
  while j <= i do
    line = line + i * j + " "
    j = j + 1
  end
  puts(line + ".")
  i = i + 1
end
