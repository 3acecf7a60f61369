# Ranges that touch the integer limits end cleanly.
largest = 9223372036854775807
smallest = -9223372036854775807 - 1
puts(range(largest - 2, largest))
#=> [9223372036854775805, 9223372036854775806, 9223372036854775807]
puts(range(largest, largest), range(smallest, smallest))  #=> [9223372036854775807] [-9223372036854775808]
puts(range(largest - 1, largest, 5))  #=> [9223372036854775806]
puts(range(smallest + 1, smallest, -1))  #=> [-9223372036854775807, -9223372036854775808]
puts(range(smallest + 1, smallest, -7))  #=> [-9223372036854775807]
puts(range(smallest, largest, largest))  #=> [-9223372036854775808, -1, 9223372036854775806]
puts(range(largest, smallest, smallest))  #=> [9223372036854775807, -1]
puts(range(0, largest, largest), range(0, smallest, smallest))
#=> [0, 9223372036854775807] [0, -9223372036854775808]
puts(range(largest, smallest), range(smallest, largest, smallest))  #=> [] []
