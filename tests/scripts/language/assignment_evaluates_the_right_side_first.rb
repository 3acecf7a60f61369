x = 1
x = x + x
puts(x)
a = [1, 2]
a = a[1]
puts(a)
def f(n) n = n * 2 return n end
puts(f(4))
