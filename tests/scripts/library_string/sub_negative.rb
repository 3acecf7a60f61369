# Negative positions count from the end: -1 is the last byte.
puts(string_sub("hello", -1), string_sub("hello", -3), string_sub("hello", -5), string_sub("hello", -100))
#=> o llo hello hello
puts(string_sub("hello", 2, -2), string_sub("hello", -3, -2), string_sub("hello", -100, 2))  #=> ell ll he
puts(string_sub("hello", 1, -5), string_sub("hello", -4, 4))  #=> h ell
puts(string_sub("hello", -9223372036854775807 - 1), string_sub("hello", -9223372036854775807 - 1, 1))  #=> hello h
