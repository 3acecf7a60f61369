def divide(a, b)
  # a comment moves the line

  return a / b
end
def mixed(a, b, c)
  return (a - b) * c
end
def negated(a) return -a end
puts(pcall(divide, 1, 0))
puts(pcall(divide, "1", 1))
puts(pcall(mixed, 1, "b", "c"))
puts(pcall(mixed, 1, 2, "c"))
puts(pcall(negated, "a"))
def compared(a, b) return a < b end
def remainder(a, b) return a % b end
puts(pcall(compared, 1, "2"))
puts(pcall(remainder, 1, 0))
puts(mixed(nil, 1, 2))
