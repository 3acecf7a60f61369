s = "x"
i = 0
while i < 20 do
  s = s + s
  i = i + 1
end
puts(len(s), s[1048575], s[1048576])
s[1048575] = "y"
puts(string_sub(s, -2))
t = ""
i = 0
while i < 200000 do
  t = t + "ab"
  i = i + 1
end
puts(len(t), string_sub(t, -3))
a = []
a[1000000] = "end"
puts(len(a), a[999999], a[1000000])
i = 0
while i < 300000 do
  a[i] = i
  i = i + 1
end
puts(a[299999], a[300000], len(a))
