# Whether an index or a key is there.
list = [10, nil]
puts(table_has_key(list, 0), table_has_key(list, 1), table_has_key(list, 2), table_has_key(list, -1))
#=> true true false false
puts(table_has_key(list, 1.9), table_has_key(list, true), table_has_key([], false))  #=> true true false
m = map_new()
m["a"] = nil
m[1] = "one"
puts(table_has_key(m, "a"), table_has_key(m, "b"), table_has_key(m, 1), table_has_key(m, "1"), table_has_key(m, 1.0))
#=> true false true true true
map_delete(m, "a")
puts(table_has_key(m, "a"), table_has_key(m, nil))  #=> false false
puts(type_of(table_has_key(m, "a")))  #=> boolean
