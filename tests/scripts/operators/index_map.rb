m = map_new()
m["a"] = 1
m[2] = "two"
m[nil] = "none"
m[true] = "yes"
m[1.5] = "half"
puts(m["a"], m[2], m[nil], m[true], m[1.5], m["b"], m[false], m[-1])
puts(m["2"], m["nil"], m["true"], m["1.5"], m[2.0], m["2.0"])
puts(map_new()["x"])
