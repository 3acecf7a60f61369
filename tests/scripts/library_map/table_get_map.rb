# An entry by key, a default where there is none; a stored nil is an entry.
m = map_new()
m["a"] = 1
m[2] = "two"
m["empty"] = nil
puts(table_get(m, "a"), table_get(m, "b"), table_get(m, "b", "d"), table_get(m, "a", "d"))  #=> 1 nil d 1
puts(table_get(m, 2), table_get(m, "2"), table_get(m, 2.0))  #=> two two two
puts(table_get(m, "empty", "d"), table_get(m, nil, "d"))  #=> nil d
puts(m)  #=> {a: 1, 2: two, empty: nil}
