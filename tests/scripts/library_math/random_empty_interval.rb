puts(pcall(math_random, 0))  #=> [true, false, math_random interval is empty]
puts(pcall(math_random, -5))  #=> [true, false, math_random interval is empty]
puts(pcall(math_random, false))  #=> [true, false, math_random interval is empty]
puts(pcall(math_random, 0.9))  #=> [true, false, math_random interval is empty]
puts(pcall(math_random, 3, 2))  #=> [true, false, math_random interval is empty]
puts(pcall(math_random, 9223372036854775807, -9223372036854775807))
#=> [true, false, math_random interval is empty]
