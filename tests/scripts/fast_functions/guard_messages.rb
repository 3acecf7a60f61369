def f(x) if x then error('it\'s "bad"\n\ttwo lines') end return 1 end
puts(pcall(f, 1))
def g(x) if x then error("error") end return 1 end
puts(pcall(g, 1))
def h(x) if x then (error)("in parentheses") end return 1 end
puts(pcall(h, 1))
