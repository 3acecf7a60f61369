s = 'a\b'
puts(string_byte(s, 1, -1))