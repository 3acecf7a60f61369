# A size that no memory can hold is an ordinary script error, and the script goes on.
puts(pcall(array_new, 1000000000000))  #=> [true, false, out of memory]
puts(pcall(array_new, 1000000000000, "x"))  #=> [true, false, out of memory]
puts(pcall(array_new, 9223372036854775807))  #=> [true, false, out of memory]
puts(array_new(1))  #=> [nil]
