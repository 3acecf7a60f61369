# A new map with the same entries; the values are shared.
m = map_new()
m["list"] = [1]
m["n"] = 5
copy = map_clone(m)
puts(copy == m, copy)  #=> true {list: [1], n: 5}
copy["n"] = 6
array_push(copy["list"], 2)
puts(m, copy)  #=> {list: [1, 2], n: 5} {list: [1, 2], n: 6}
puts(map_clone(map_new()))  #=> {}
