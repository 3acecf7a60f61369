# A repeated string; no repetition, or nothing to repeat, is the empty string.
puts(string_rep("ab", 3), string_rep("ab", 1), string_rep("-", 10))  #=> ababab ab ----------
puts("[" + string_rep("ab", 0) + string_rep("ab", -1) + string_rep("ab", -9223372036854775807) + "]")  #=> []
puts("[" + string_rep("", 5) + string_rep("", 9223372036854775807) + string_rep("", -1) + "]")  #=> []
puts(string_rep("ab", 2.9), string_rep("x", true), "[" + string_rep("x", 0.9) + "]")  #=> abab x []
puts(len(string_rep("abc", 100000)), type_of(string_rep("", 0)))  #=> 300000 string
