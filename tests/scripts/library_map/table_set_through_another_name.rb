# table_set can be stored and called under another name.
store = table_set
list = []
puts(store(list, 1, "b"), list)  #=> b [nil, b]
puts(pcall(store, list, -1, 0))  #=> [true, false, table_set array index must be non-negative]
puts(pcall(store, list))  #=> [true, false, table_set expects exactly 3 arguments]
