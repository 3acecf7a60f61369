def empty() return [] end
a = empty()
array_push(a, 1)
puts(a, empty())
def triple(x) return [1, 2, x] end
b = triple(3)
b[0] = "changed"
puts(b, triple(4))
def nested(x) return [[x, -x], [], [x + 1]] end
c = nested(5)
part = c[0]
part[0] = "changed"
puts(c, nested(6))
def wrap(x) return [x] end
inner = [0]
d = wrap(inner)
part = d[0]
part[0] = 9
puts(inner)
