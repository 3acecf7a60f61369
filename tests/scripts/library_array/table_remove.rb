# table_remove takes out the last element, or the one at an index, and returns it.
list = ["a", "b", "c", "d"]
puts(table_remove(list), list)  #=> d [a, b, c]
puts(table_remove(list, 0), list)  #=> a [b, c]
puts(table_remove(list, 1), list)  #=> c [b]
puts(table_remove(list, 0.9), list)  #=> b []
puts(table_remove([1, 2, 3], true), table_remove([[1], 2], 0))  #=> 2 [1]
