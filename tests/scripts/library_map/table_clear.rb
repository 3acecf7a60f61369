# table_clear empties the container and returns it.
list = [1, [2]]
same = list
puts(table_clear(list), same)  #=> [] []
array_push(table_clear(list), "new")
puts(same)  #=> [new]
m = map_new()
m["a"] = 1
alias = m
puts(table_clear(m), alias, len(alias))  #=> {} {} 0
cleared = table_clear(m)
cleared["b"] = 2
puts(m)  #=> {b: 2}
