def subtract(a, b) r = a - b return r end
def multiply(a, b) r = a * b return r end
def divide(a, b) r = a / b return r end
def modulo(a, b) r = a % b return r end
def negate(a) r = -a return r end
puts(pcall(subtract, "5", 1))
puts(pcall(subtract, 1, nil))
puts(pcall(multiply, "a", 3))
puts(pcall(multiply, [1], 2))
puts(pcall(divide, "6", 3))
puts(pcall(divide, 6, map_new()))
puts(pcall(modulo, "6", 3))
puts(pcall(modulo, 6, puts))
puts(pcall(negate, "5"))
puts(pcall(negate, nil))
puts(pcall(negate, [1]))
# The types are tested before the zero.
puts(pcall(divide, "a", 0))
puts(pcall(modulo, nil, 0))
