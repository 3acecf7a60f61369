puts(string_byte("a\nb\tc\rd", 1, -1))
puts(string_byte('\n\t\r', 1, -1))
puts("\\", '\\', "a\qb", 'a\qb', "\0\x41\u", "\#")
puts(len("\\"), len("\\n"), "\\n")
