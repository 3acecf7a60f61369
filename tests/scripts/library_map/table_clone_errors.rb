puts(pcall(table_clone, "abc"))  #=> [true, false, table_clone expects an array or map]
puts(pcall(table_clone, 5))  #=> [true, false, table_clone expects an array or map]
puts(pcall(table_clone, nil))  #=> [true, false, table_clone expects an array or map]
puts(pcall(table_clone, len))  #=> [true, false, table_clone expects an array or map]
