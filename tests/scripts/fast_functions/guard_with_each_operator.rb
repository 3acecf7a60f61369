# Every operator without a call may stand in the guard and in the body.
def add(a, b) if a + b == "xy" then error("add") end return a + b end
def subtract(a, b) if a - b == 0 then error("subtract") end return a - b end
def multiply(a, b) if a * b == 0 then error("multiply") end return a * b end
def divide(a, b) if a / b == 1 then error("divide") end return a / b end
def modulo(a, b) if a % b == 1 then error("modulo") end return a % b end
def negate(a) if -a == 1 then error("negate") end return -a end
def invert(a) if !a then error("invert") end return !a end
def not_equal(a, b) if a != b then error("not equal") end return a != b end
def less(a, b) if a < b then error("less") end return a < b end
def less_equal(a, b) if a <= b then error("less equal") end return a <= b end
def greater(a, b) if a > b then error("greater") end return a > b end
def greater_equal(a, b) if a >= b then error("greater equal") end return a >= b end
def array(a, b) if [a, b] == [1, 2] then error("array") end return [a, b] end
puts(pcall(add, "x", "y"), pcall(subtract, 2, 2), pcall(multiply, 0, 5), pcall(divide, 2, 2), pcall(modulo, 5, 2))
puts(pcall(negate, -1), pcall(invert, nil), pcall(not_equal, 1, 2), pcall(less, 1, 2), pcall(less_equal, 2, 2))
puts(pcall(greater, 2, 1), pcall(greater_equal, 2, 2), pcall(array, 1, 2))
puts(add("y", "x"), subtract(3, 2), multiply(2, 3), divide(3, 2), modulo(4, 2), negate(1), invert(1))
puts(not_equal(1, 1), less(2, 1), less_equal(2, 1), greater(1, 2), greater_equal(1, 2), array(2, 1))
