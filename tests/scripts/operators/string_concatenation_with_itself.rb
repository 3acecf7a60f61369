s = "ab"
s = s + s
puts(s)
s = s + s + s
puts(s)
def twice(x) x = x + x return x end
puts(twice(s), s)
