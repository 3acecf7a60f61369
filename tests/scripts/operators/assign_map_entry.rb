m = map_new()
m["a"] = 1
m["a"] = m["a"] + 1
m[1] = "one"
m["list"] = [1]
n = m
n["b"] = nil
puts(m, len(m))
m["self"] = 0
m[m["a"]] = "two"
puts(m)
