puts(pcall(string_char, 256))  #=> [true, false, string_char code must be between 0 and 255]
puts(pcall(string_char, -1))  #=> [true, false, string_char code must be between 0 and 255]
puts(pcall(string_char, 65, 9223372036854775807))  #=> [true, false, string_char code must be between 0 and 255]
puts(pcall(string_char, 4294967296 + 65))  #=> [true, false, string_char code must be between 0 and 255]
puts(pcall(string_char, "A"))  #=> [true, false, string_char expects a numeric argument]
puts(pcall(string_char, 65, nil))  #=> [true, false, string_char expects a numeric argument]
# The codes are looked at from left to right.
puts(pcall(string_char, 300, "A"))  #=> [true, false, string_char code must be between 0 and 255]
puts(pcall(string_char, "A", 300))  #=> [true, false, string_char expects a numeric argument]
