x = 10
def f(assign)
  if assign then x = 1 end
  return x
end
puts(f(false), f(true), f(false), x)
# The first read sees the global, the second the local.
def counted()
  x = x + 1
  x = x + 1
  return x
end
puts(counted(), counted(), x)
# Assigned nil is assigned.
def cleared()
  before = x
  x = nil
  return [before, x]
end
puts(cleared(), x)
