# NaN is kept when it comes first and ignored elsewhere, since no comparison with it holds.
nan = math_sqrt(-1)
puts(math_min(nan, 1), math_min(1, nan), math_min(2, nan, 1))  #=> nan 1 1
puts(math_max(nan, 1), math_max(1, nan), math_max(1, nan, 2))  #=> nan 1 2
