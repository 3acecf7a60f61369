s = "abc"
puts(s[0], s[2], s[3], s[1.9], s[true], s[-0.9], ""[0], "xyz"[1])
puts(type_of(s[0]), len(s[0]), len(string_char(0, 200)[1]), string_byte("é"[0]))
