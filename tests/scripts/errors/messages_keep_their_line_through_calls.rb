def a(f) return f(1) end
def b(f)
  r = a(f)
  return r
end
def bad(x)
  # the failing line is the next one
  r = x["k"]
  return r
end
puts(pcall(b, bad))
puts(pcall(a, 5))
puts(pcall(a, len))
