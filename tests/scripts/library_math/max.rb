# The largest argument, as an integer when it is whole.
puts(math_max(3), math_max(3, 1, 2), math_max(-1, -2.5))  #=> 3 3 -1
puts(math_max(1, 2.0), math_max(1, 2.5), math_max(true, 0.5), math_max(false))  #=> 2 2.5 1 0
puts(type_of(math_max(1, 2.0)), type_of(math_max(1, 2.5)))  #=> integer float
puts(math_max(5, 0 - math_log(0)), math_max(0, 1, 2, 3, 4, 5, 6, 7, 8, 9))  #=> inf 9
