def f(a, b) r = (a - 1) + (b * 1) return r end
puts(pcall(f, "x", "y"))
puts(pcall(f, 1, "y"))
def g(a, b) r = a[0] + b["k"] return r end
puts(pcall(g, 1, 2))
puts(pcall(g, [1], 2))
