# What is taken out of a container belongs to the script from then on.
list = [["a string that is too long for any inline storage"]]
first = array_shift(list)
table_clear(list)
puts(first)  #=> [a string that is too long for any inline storage]
m = map_new()
m["k"] = [1, 2]
taken = map_delete(m, "k")
array_push(taken, 3)
puts(taken, m)  #=> [1, 2, 3] {}
list = [[1], [2], [3]]
popped = array_pop(list, 2)
table_remove(list)
puts(popped, list)  #=> [[2], [3]] []
