# The square root is always a float.
puts(math_sqrt(4), type_of(math_sqrt(4)))  #=> 2 float
puts(math_sqrt(2), math_sqrt(0), math_sqrt(0.25), math_sqrt(true))  #=> 1.41421 0 0.5 1
puts(math_sqrt(-1), type_of(math_sqrt(-1)))  #=> nan float
puts(math_sqrt(0 - math_log(0)))  #=> inf
