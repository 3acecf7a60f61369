s = string_char(0, 255) + string_char(128, 0)
puts(len(s), string_byte(s, 1, -1))
