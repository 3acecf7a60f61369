a = map_new()
b = map_new()
puts(a == b, a == a)
a["x"] = 1
puts(a == b, a != b)
b["x"] = 1.0
puts(a == b)
a["y"] = [1]
b["z"] = [1]
puts(a == b)
map_delete(b, "z")
b["y"] = [1]
puts(a == b)
# Entry order does not matter, and nil is a value like any other.
c = map_new()
c["y"] = [1]
c["x"] = 1
puts(a == c, c == a)
c["x"] = nil
map_delete(a, "x")
puts(a == c, c == a)
a["w"] = nil
puts(a == c)
