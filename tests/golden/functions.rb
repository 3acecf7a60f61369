def add(a, b)
  return a + b
end
def nothing
end
def twice(f, x) f(f(x)) end
puts(add(1, 2), nothing())
