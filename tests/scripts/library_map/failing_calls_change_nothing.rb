# A built-in that fails has not touched its map.
m = map_new()
m["a"] = 1
m["[]"] = 2
pcall(map_delete, m, [])
pcall(map_delete, m, m, "default")
pcall(map_delete, m)
pcall(map_merge, m, 5)
pcall(table_set, m, [], "x")
pcall(table_set, m, len, "x")
pcall(table_set, m, "a")
pcall(table_get, m, [], "x")
pcall(table_clear, m, m)
pcall(table_insert, m, "x")
pcall(table_remove, m)
pcall(array_push, m, "x")
def store(target, key, value)
  target[key] = value
end
puts(pcall(store, m, [], "x"), pcall(store, m, m, "x"))
#=> [true, false, unsupported map key type] [true, false, unsupported map key type]
puts(m)  #=> {a: 1, []: 2}
