# In a map it stores under the key's text.
m = map_new()
puts(table_set(m, 1, true), m)  #=> true {1: true}
puts(table_set(m, "1", "again"), table_set(m, nil, 2), table_set(m, 1.5, 3), table_set(m, false, 4))  #=> again 2 3 4
puts(m)  #=> {1: again, nil: 2, 1.5: 3, false: 4}
inner = [1]
table_set(m, "list", inner)
array_push(inner, 2)
puts(m["list"])  #=> [1, 2]
