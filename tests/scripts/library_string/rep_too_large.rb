# A length that 64 bits cannot hold has a message of its own; anything smaller is a matter of memory.
largest = 9223372036854775807
puts(pcall(string_rep, "abc", largest))  #=> [true, false, string_rep result is too large]
puts(pcall(string_rep, "ab", largest))  #=> [true, false, out of memory]
puts(pcall(string_rep, "x", largest))  #=> [true, false, out of memory]
puts(pcall(string_rep, "x", 1000000000000))  #=> [true, false, out of memory]
puts(pcall(string_rep, string_rep("x", 65536), 4611686018427387904))  #=> [true, false, string_rep result is too large]
puts(string_rep("still here", 1))  #=> still here
