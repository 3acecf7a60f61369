# A step of either sign; the last value never passes the stop.
puts(range(1, 10, 3), range(1, 9, 3))  #=> [1, 4, 7, 10] [1, 4, 7]
puts(range(5, 1, -2), range(5, 2, -2))  #=> [5, 3, 1] [5, 3]
puts(range(1, 5, -1), range(5, 1, 1), range(5, 1, 2))  #=> [] [] []
puts(range(3, 3, 5), range(3, 3, -5))  #=> [3] [3]
puts(range(0, 10, 100), range(1, 4, 1.9), range(1, 3, true))  #=> [0] [1, 2, 3, 4] [1, 2, 3]
