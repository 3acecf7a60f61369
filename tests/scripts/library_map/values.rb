# A copy of an array; the values of a map in the map's own order.
list = [3, [1]]
copy = values(list)
copy[0] = "changed"
array_push(copy[1], "shared")
puts(list, copy)  #=> [3, [1, shared]] [changed, [1, shared]]
m = map_new()
m["b"] = 1
m["a"] = nil
m["c"] = 1
puts(values(m), values(map_new()), values([]))  #=> [1, nil, 1] [] []
