# An empty array gives nil, whatever the index.
list = []
puts(table_remove(list), table_remove(list, 0), table_remove(list, 5), table_remove(list, -1))  #=> nil nil nil nil
puts(table_remove(list, "x"), table_remove(list, nil), list)  #=> nil nil []
