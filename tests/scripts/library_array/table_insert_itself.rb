# An array can be inserted into itself, and so can its own elements.
list = [1]
table_insert(list, 0, list)
puts(len(list), len(list[0]), list[1])  #=> 2 2 1
table_insert(list, list)
puts(len(list), len(list[2]))  #=> 3 3
table_clear(list)
other = ["a string that is too long for any inline storage", "b"]
table_insert(other, 0, other[1])
table_insert(other, 1, other[1])
puts(len(other), other[0], other[1] == other[2], other[3])  #=> 4 b true b
