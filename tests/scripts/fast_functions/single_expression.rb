# Functions of one returned expression give what any function would give.
def add(a, b) return a + b end
def subtract(a, b) return a - b end
def multiply(a, b) return a * b end
def divide(a, b) return a / b end
def modulo(a, b) return a % b end
def negate(a) return -a end
def invert(a) return not a end
def polynomial(x) return 3 * x * x - 2 * x + 1 end
def constant() return 42 end
def nothing() return end
def same(x) return x end
puts(add(1, 2), add("a", 1), add([1], [2]), add(9223372036854775807, 1), add(true, 1))
puts(subtract(5, 7), multiply(6, 7), divide(7, 2), modulo(-7, 3), negate(5), negate(0.0), invert(0), invert(nil))
puts(polynomial(4), constant(), nothing(), same("x"), same(same) == same)
