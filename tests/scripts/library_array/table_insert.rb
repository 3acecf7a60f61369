# table_insert appends, or inserts before a position; it returns nil.
list = [1, 2]
puts(table_insert(list, 3), list)  #=> nil [1, 2, 3]
puts(table_insert(list, 0, "first"), list)  #=> nil [first, 1, 2, 3]
table_insert(list, 2, "middle")
puts(list)  #=> [first, 1, middle, 2, 3]
table_insert(list, 5, "last")
puts(list)  #=> [first, 1, middle, 2, 3, last]
empty = []
table_insert(empty, 0, "only")
puts(empty)  #=> [only]
table_insert(empty, 1.9, "b")
table_insert(empty, true, "a")
table_insert(empty, -0.5, nil)
puts(empty)  #=> [nil, only, a, b]
table_insert(empty, nil)
puts(len(empty))  #=> 5
