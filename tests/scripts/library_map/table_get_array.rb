# An element by index, a default where there is none. Negative indices never count from the end.
list = [10, 20, nil]
puts(table_get(list, 0), table_get(list, 1), table_get(list, 3), table_get(list, -1))  #=> 10 20 nil nil
puts(table_get(list, 3, "d"), table_get(list, -1, "d"), table_get([], 0, "d"))  #=> d d d
puts(table_get(list, 2), table_get(list, 2, "d"), table_get(list, 0, "d"))  #=> nil nil 10
puts(table_get(list, 1.9), table_get(list, true), table_get(list, -0.5))  #=> 20 20 10
puts(table_get(list, 9223372036854775807, "d"), table_get(list, -9223372036854775807, "d"))  #=> d d
