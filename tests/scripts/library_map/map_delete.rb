# map_delete takes an entry out and returns its value, or a default, or nil.
m = map_new()
m["a"] = 1
m["b"] = [2]
m["none"] = nil
puts(map_delete(m, "a"), m)  #=> 1 {b: [2], none: nil}
puts(map_delete(m, "a"), map_delete(m, "a", "default"))  #=> nil default
puts(map_delete(m, "b", "default"), m)  #=> [2] {none: nil}
puts(map_delete(m, "none", "default"), m)  #=> nil {}
puts(map_delete(map_new(), "x", [1]))  #=> [1]
