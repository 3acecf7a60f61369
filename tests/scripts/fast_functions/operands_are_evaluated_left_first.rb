def f(a, b) return (a - 1) + (b * 1) end
puts(pcall(f, "x", "y"))
puts(pcall(f, 1, "y"))
def g(a) return undefined_left + -a end
puts(pcall(g, "x"))
def h(a) return -a + undefined_right end
puts(pcall(h, "x"))
puts(pcall(h, 1))
def i(a, b) return [-a, b / 0, -b] end
puts(pcall(i, 1, 1))
puts(pcall(i, "x", 1))
def j(a) return (a < 1) == (a - 1) end
puts(pcall(j, "x"))
