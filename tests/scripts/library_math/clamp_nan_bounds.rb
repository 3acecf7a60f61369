# A bound that is NaN limits nothing, since no comparison with it holds.
nan = math_sqrt(-1)
puts(math_clamp(5, nan, 10), math_clamp(50, nan, 10), math_clamp(-50, nan, 10))  #=> 5 10 -50
puts(math_clamp(5, 1, nan), math_clamp(50, 1, nan), math_clamp(-50, 1, nan))  #=> 5 50 1
puts(math_clamp(5, nan, nan), math_clamp(nan, 1, nan), type_of(math_clamp(5.0, nan, nan)))  #=> 5 nan integer
