a = "x"
b = a
a = a + "y"
puts(a, b)
c = a + b
a = "z"
puts(a, b, c)
s = ""
i = 0
while i < 5 do
  t = s
  s = s + i
  i = i + 1
end
puts(s, t)
def append(s) s = s + "!" return s end
word = "hi"
puts(append(word), word)
