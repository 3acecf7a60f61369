def n(x) y = x return y end
a = [10, 20, 30]
if n(true) then puts("if") end
while n(len(a)) > 2 do array_pop(a) end
puts(a[n(1)], n(a)[0], [n(1), n(2)], -n(3), not n(nil), n(1) + n(2) * n(3))
a[n(0)] = n("set")
puts(a)
n("statement")
return n(1)
