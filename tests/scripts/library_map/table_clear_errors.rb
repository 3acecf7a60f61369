puts(pcall(table_clear, "abc"))  #=> [true, false, table_clear expects an array or map]
puts(pcall(table_clear, 5))  #=> [true, false, table_clear expects an array or map]
puts(pcall(table_clear, nil))  #=> [true, false, table_clear expects an array or map]
puts(pcall(table_clear, false))  #=> [true, false, table_clear expects an array or map]
