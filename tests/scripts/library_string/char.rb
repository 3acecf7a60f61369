# A string made of byte codes.
puts(string_char(72, 105), string_char(65), "[" + string_char() + "]")  #=> Hi A []
puts(string_char(195, 169), string_char(72.9, true + 64))  #=> é HA
puts(len(string_char(0)), len(string_char(0, 0, 255)), string_byte(string_char(true, false), 1, 2))  #=> 1 3 [1, 0]
puts(type_of(string_char()), len(string_char(1, 2, 3)))  #=> string 3
