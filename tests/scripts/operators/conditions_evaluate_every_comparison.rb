# What decides a condition does not keep the comparisons after it from failing, nor from calling.
def f(x, y)
  if x > 5 and y < 3
    return "then"
  end
  return "else"
end
puts(pcall(f, 1, 2), pcall(f, 1, "a"), pcall(f, 9, "a"), pcall(f, 9, 2))

def g(x, y)
  if x > 5 or y < 3
    return "then"
  end
  return "else"
end
puts(pcall(g, 9, 5), pcall(g, 9, nil), pcall(g, 1, nil), pcall(g, 1, 5))

def h(x)
  if x == 1 or x < "b"
    return "then"
  end
  return "else"
end
puts(pcall(h, "a"), pcall(h, "c"), pcall(h, 1), pcall(h, nil))

def k(x)
  if x != 1 and x > 0 and x < "b"
    return "then"
  end
  return "else"
end
puts(pcall(k, "a"), pcall(k, -1), pcall(k, 1))

def m(x, y)
  while x > 0 and x < 9 and y >= x or x == 7
    x = x - 1
  end
  return x
end
puts(pcall(m, 5, 9), pcall(m, 5, 4), pcall(m, 10, "a"), pcall(m, 7, 7), pcall(m, "a", 7), pcall(m, [1], 7))

seen = []
def counted(value)
  array_push(seen, value)
  return value
end
def n(x)
  if x > 1 and counted(x) > 2 and x < 9 or counted(1) == x
    return "then"
  end
  return "else"
end
puts(n(0), n(3), n(10), n(1), seen)

# What was compared as a number may be another kind later on.
def p(x)
  if x > 0
    x = "text"
  end
  if x != 1 and x < 5 and x > 2
    return "then"
  end
  return "else"
end
puts(pcall(p, 0), pcall(p, 1))
def q(x)
  a = x > 0
  x = [x]
  if a == 3 and x < 5
    return "then"
  end
  return "else"
end
puts(pcall(q, 1))
