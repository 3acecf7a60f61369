def f(a, b) return a end
def g() return f([1, 2, nil - 1], error("late")) end
puts(pcall(g))
def h() return f(error("early"), nil - 1) end
puts(pcall(h))
