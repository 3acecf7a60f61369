# A map merged with itself is a copy.
m = map_new()
m["a"] = 1
m["b"] = [2]
copy = map_merge(m, m)
copy["c"] = 3
array_push(copy["b"], "shared")
puts(m, copy)  #=> {a: 1, b: [2, shared]} {a: 1, b: [2, shared], c: 3}
