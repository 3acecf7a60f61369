# A range that no memory can hold is an ordinary script error.
largest = 9223372036854775807
puts(pcall(range, 0, 9000000000000000000))  #=> [true, false, out of memory]
puts(pcall(range, 9000000000000000000))  #=> [true, false, out of memory]
puts(pcall(range, -largest - 1, largest))  #=> [true, false, out of memory]
puts(pcall(range, 0, -largest, -1))  #=> [true, false, out of memory]
puts(range(0, 1000000000000, 1000000000000))  #=> [0, 1000000000000]
