g = 1
def locals(a, b)
  a = a + 1
  a = a + b
  a = 1 + a
  a = b + a
  a = a - 1
  a = a + g
  a = a * 2
  a = a + a
  b = a + 1
  a = a + 1 + 2
  return a
end
def globals
  g = g + 1
  g = g + g
end
g = g + 1
g = 1 + g
