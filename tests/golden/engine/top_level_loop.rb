i = 0
s = ""
while i < 10
  if i % 2 == 0 then
    s = s + i
  end
  i = i + 1
end
