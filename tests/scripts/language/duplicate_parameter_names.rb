# Equal names share the first slot; later arguments move up by one name.
def f(a, a) return a end
def g(a, a, c) return c end
puts(f(1, 2), g(1, 2, 3))
# The same when the function also has locals and statements.
def slow_f(a, a) b = a b = b return b end
def slow_g(a, a, c) r = c r = r return r end
puts(slow_f(1, 2), slow_g(1, 2, 3))
puts(pcall(f, 1))
puts(pcall(slow_g, 1, 2))
