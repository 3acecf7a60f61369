# Only the first byte of the new text is used; the string's length never changes.
s = "abc"
t = s
s[0] = "xyz"
puts(s, t)
s[1] = 7
s[2.9] = 12.5
puts(s)
s[0] = nil
s[1] = [5]
s[2] = true
puts(s)
s[0] = -1
s[1] = "é"
puts(string_byte(s, 1, -1))
u = "ab"
u[1] = u
puts(u)
