# The codes of the bytes, in a new array; one byte unless an end is given.
puts(string_byte("ABC"), string_byte("ABC", 2), string_byte("ABC", 1, -1))  #=> [65] [66] [65, 66, 67]
puts(string_byte("ABC", -1), string_byte("ABC", -2, -1), string_byte("ABC", 2, 100))  #=> [67] [66, 67] [66, 67]
puts(string_byte("ABC", 5), string_byte("ABC", 0), string_byte("ABC", 3, 1))  #=> [] [] []
puts(string_byte("ABC", 0, 2), string_byte("ABC", -5, -1), string_byte("ABC", -5))  #=> [65, 66] [65, 66, 67] []
puts(string_byte(""), string_byte("", 1, -1), string_byte("", -1))  #=> [] [] []
puts(string_byte("é", 1, 2), string_byte(string_char(0)), string_byte(string_char(255)))  #=> [195, 169] [0] [255]
puts(string_byte("ABC", 1.9, 2.9), string_byte("ABC", true))  #=> [65, 66] [65]
puts(string_byte("AB", -9223372036854775807 - 1, 9223372036854775807))  #=> [65, 66]
puts(type_of(string_byte("A")), type_of(string_byte("A")[0]))  #=> array integer
