# Changing the result changes nothing else.
m = map_new()
m["a"] = 1
list = keys(m)
list[0] = "changed"
array_push(list, "more")
puts(m, keys(m))  #=> {a: 1} [a]
