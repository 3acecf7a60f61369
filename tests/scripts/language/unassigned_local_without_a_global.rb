def f()
  y = y + 1
  return y
end
puts(pcall(f))
load("y = 5")()
puts(pcall(f), y)
def g()
  while false do z = 1 end
  return z
end
puts(pcall(g))
