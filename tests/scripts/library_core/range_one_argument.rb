# range(n) counts from 0 to n - 1.
puts(range(3))  #=> [0, 1, 2]
puts(range(1))  #=> [0]
puts(range(0), range(-3))  #=> [] []
puts(range(2.9), range(true), range(false))  #=> [0, 1] [0] []
puts(range(-9223372036854775807 - 1))  #=> []
puts(type_of(range(3)), type_of(range(3)[0]))  #=> array integer
