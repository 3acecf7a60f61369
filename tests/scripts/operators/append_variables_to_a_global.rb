# Several variables added to a global, which may be a text, a number, or neither.
a = "one"
b = "two"
s = "text "
s = s + a + b
puts(s)
s = 5
a = 6
b = 7
s = s + a + b
puts(s)
s = 0.5
s = s + a + b
puts(s)
s = 1
a = 0.25
s = s + a + b
puts(s)
s = 9223372036854775807
a = 1
b = -1
s = s + a + b
puts(s)
s = s + a + a
puts(s)
s = 1
a = 2
b = " and text"
s = s + a + b
puts(s)
s = s + s + a
puts(s)
s = "x"
s = s + s + s
puts(s)
a = [1, [2]]
b = nil
s = s + a + b
puts(s)
s = true
a = true
b = 1.5
s = s + a + b
puts(s)
texts = ["p", "q"]
s = "t"
s = s + texts[0] + texts[1]
puts(s)
s = texts
a = "u"
s = s + a + a
puts(s, texts)

# A part that fails leaves the variable as it was.
s = "kept"
puts(pcall(load("s = s + a + missing")), s)
s = nil
b = nil
puts(pcall(load("s = s + b + a")), s)
s = [1]
puts(pcall(load("s = s + b + b")), s)
s = 3
puts(pcall(load("s = s + a + b\nreturn s")), s)
puts(pcall(load("s = 3\ns = s + b + a\nreturn s")), s)

# A long text grows in place: it is not copied each time.
s = ""
a = "0123456789"
b = "abcdefghijklmnop"
i = 0
while i < 20000
  s = s + a + b
  i = i + 1
end
puts(len(s), string_sub(s, -12, -1))
