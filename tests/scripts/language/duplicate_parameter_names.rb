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
# The same through pcall.
def third(a, a, c) r = c return r end
def few(a, a, a) if false then x = 0 end return [a, x] end
def kept(a, a, c) if c == "stop" then error("no") end return [a, c] end
puts(pcall(third, 1, 2, 3), pcall(few, 1, 2, 3), pcall(pcall, third, 1, 2, 3), pcall(kept, 1, 2, 3))
