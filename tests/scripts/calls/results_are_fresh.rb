def make() a = [] return a end
x = make()
y = make()
array_push(x, 1)
puts(x, y)
def literal() a = [1, [2]] return a end
p = literal()
q = literal()
part = p[1]
part[0] = "changed"
puts(p, q)
def text() s = "abc" s[0] = "X" return s end
puts(text(), text())
