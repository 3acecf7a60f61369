# table_set stores at an index, growing the array with nil, and returns the value.
list = [1, 2]
puts(table_set(list, 0, "a"), list)  #=> a [a, 2]
puts(table_set(list, 4, "x"), list)  #=> x [a, 2, nil, nil, x]
puts(table_set(list, 5, [1]), len(list))  #=> [1] 6
empty = []
puts(table_set(empty, 2, "x"), empty)  #=> x [nil, nil, x]
table_set(empty, 0.9, "zero")
table_set(empty, true, "one")
puts(empty)  #=> [zero, one, x]
table_set(empty, -0.9, nil)
puts(empty)  #=> [nil, one, x]
