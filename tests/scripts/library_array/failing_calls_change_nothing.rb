# A built-in that fails has not touched its arguments.
list = [3, 1, 2]
pcall(array_pop, list, "x")
pcall(array_new, list)
pcall(table_insert, list, 9, "x")
pcall(table_insert, list, "x", "x")
pcall(table_remove, list, 9)
pcall(table_set, list, -1, "x")
pcall(table_set, list, "x", "x")
pcall(table_sort, list, list)
pcall(array_push, list)
puts(list)  #=> [3, 1, 2]
