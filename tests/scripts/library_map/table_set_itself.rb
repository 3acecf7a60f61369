# A container can be stored in itself.
list = [1]
table_set(list, 1, list)
puts(len(list), len(list[1]))  #=> 2 2
table_clear(list)
m = map_new()
table_set(m, "self", m)
table_set(m["self"], "k", 5)
puts(len(m), m["k"])  #=> 2 5
table_clear(m)
