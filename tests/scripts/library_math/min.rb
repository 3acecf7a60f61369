# The smallest argument, as an integer when it is whole.
puts(math_min(3), math_min(3, 1, 2), math_min(-1, -2.5))  #=> 3 1 -2.5
puts(math_min(2, 1.5), math_min(2.0, 3), math_min(true, 2), math_min(false, true))  #=> 1.5 2 1 0
puts(type_of(math_min(2.0, 3)), type_of(math_min(true, 2)), type_of(math_min(1.5)))  #=> integer integer float
puts(math_min(math_log(0), 5), math_min(1, 2, 3, 4, 5, 6, 7, 8, 9, 0))  #=> -inf 0
