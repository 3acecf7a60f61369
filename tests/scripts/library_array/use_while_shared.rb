# Built-ins that change an array in place do so for every holder, wherever the array is stored.
inner = [3, 1, 2]
m = map_new()
m["list"] = inner
outer = [inner, m]
table_sort(outer[0])
puts(m["list"], outer)  #=> [1, 2, 3] [[1, 2, 3], {list: [1, 2, 3]}]
array_unshift(m["list"], array_pop(inner))
puts(inner)  #=> [3, 1, 2]
array_shift(outer[1]["list"])
table_insert(outer[0], 0, "x")
puts(inner, len(m["list"]))  #=> [x, 1, 2] 3
