# A new map with the entries of both; for equal keys the second map wins.
a = map_new()
a["x"] = 1
a["y"] = 2
b = map_new()
b["y"] = 20
b["z"] = 30
merged = map_merge(a, b)
puts(merged)  #=> {x: 1, y: 20, z: 30}
puts(a, b)  #=> {x: 1, y: 2} {y: 20, z: 30}
merged["x"] = "changed"
puts(a, map_merge(b, a))  #=> {x: 1, y: 2} {y: 2, z: 30, x: 1}
puts(map_merge(map_new(), map_new()), map_merge(a, map_new()), map_merge(map_new(), a))
#=> {} {x: 1, y: 2} {x: 1, y: 2}
