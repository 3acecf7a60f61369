# Positions count from 1 and both ends belong to the piece.
puts(string_sub("hello", 2, 4), string_sub("hello", 2), string_sub("hello", 1, 1))  #=> ell ello h
puts(string_sub("hello", 5), string_sub("hello", 5, 5), string_sub("hello", 1, 5))  #=> o o hello
puts(string_sub("hello", 1, 100), string_sub("hello", 3, 9223372036854775807))  #=> hello llo
puts(string_sub("hello", 0), string_sub("hello", 0, 2))  #=> hello he
puts(string_sub("hello", 2.9, 3.9), string_sub("hello", true, true))  #=> el h
puts(type_of(string_sub("hello", 9)), string_sub("hé", 2, 3) == "é")  #=> string true
