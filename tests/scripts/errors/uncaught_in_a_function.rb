# The line is that of the failing operation, not of the call.
def inner(x)
  y = x + 1

  return y - "a"
end
def outer(x)
  return inner(x)
end
outer(1)
