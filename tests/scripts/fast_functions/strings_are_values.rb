def same(s) return s end
def joined(s) return s + "!" end
a = "abc"
b = same(a)
b[0] = "X"
puts(a, b)
c = joined(a)
c[3] = "?"
puts(a, c, joined(a))
def literal() return "abc" end
d = literal()
d[0] = "X"
puts(d, literal())
