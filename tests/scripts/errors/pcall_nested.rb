def inner() error("inner") end
def middle()
  r = pcall(inner)
  error("middle after " + r[2])
end
def outer()
  r = pcall(middle)
  return "outer after " + r[2]
end
puts(pcall(outer))
def rethrow()
  r = pcall(inner)
  error(r[2])
end
puts(pcall(rethrow))
