# Nesting that is never closed ends in one of two messages.
r = pcall(load, string_rep("(", 1000000))
puts(len(r), string_end_with?(r[2], "stack overflow") or r[2] == "<load>:1:1000001: expected expression")
r = pcall(load, string_rep("f(", 1000000))
puts(len(r), string_end_with?(r[2], "stack overflow") or r[2] == "<load>:1:2000001: expected expression")
r = pcall(load, string_rep("a[", 1000000))
puts(len(r), string_end_with?(r[2], "stack overflow") or r[2] == "<load>:1:2000001: expected expression")
