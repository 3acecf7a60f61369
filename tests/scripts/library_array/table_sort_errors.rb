puts(pcall(table_sort, "cab"))  #=> [true, false, table_sort expects an array]
puts(pcall(table_sort, map_new()))  #=> [true, false, table_sort expects an array]
puts(pcall(table_sort, nil))  #=> [true, false, table_sort expects an array]
puts(pcall(table_sort, 5))  #=> [true, false, table_sort expects an array]
