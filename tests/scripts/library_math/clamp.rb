# A value limited to a range; whole results are integers.
puts(math_clamp(5, 1, 3), math_clamp(0, 1, 3), math_clamp(2, 1, 3))  #=> 3 1 2
puts(math_clamp(2.5, 1, 3), math_clamp(5, 1, 3.5), math_clamp(0, -0.5, 1))  #=> 2.5 3.5 0
puts(math_clamp(2.0, 1.0, 3.0), type_of(math_clamp(2.0, 1.0, 3.0)), type_of(math_clamp(9, 1.0, 3.0)))
#=> 2 integer integer
puts(math_clamp(9, 2, 2), math_clamp(true, 0, 5), math_clamp(5, false, true))  #=> 2 1 1
puts(math_clamp(math_sqrt(-1), 1, 3), math_clamp(math_log(0), 1, 3))  #=> nan 1
