# range(a, b) counts from a to b, both included.
puts(range(1, 3), range(5, 5), range(-2, 1))  #=> [1, 2, 3] [5] [-2, -1, 0, 1]
puts(range(3, 1), range(0, -1))  #=> [] []
puts(range(1.9, 3.9), range(false, true))  #=> [1, 2, 3] [0, 1]
