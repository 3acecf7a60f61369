chunk = load("x = chunk() return x")
r = pcall(chunk)
puts(len(r), string_end_with?(r[2], "stack overflow"))
