def put(s, i, v) s[i] = v end
puts(pcall(put, "abc", 3, "x"))
puts(pcall(put, "", 0, "x"))
puts(pcall(put, "abc", 0, ""))
puts(pcall(put, "abc", -1, "x"))
puts(pcall(put, "abc", nil, "x"))
puts(pcall(put, "abc", "0", "x"))
# The place is tested before the value.
puts(pcall(put, "abc", 9, ""))
puts(pcall(put, "abc", 9223372036854775807, "x"))
