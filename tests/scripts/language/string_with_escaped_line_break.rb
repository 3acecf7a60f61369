# A backslash before a line break gives that byte. The line counter does not move, so lines below count one less.
s = "a\
b"
puts(s)
puts(len(s), string_byte(s, 2))
x = nil + 1
