# An array can be put in front of itself; values may come from the array that grows.
list = [1]
array_unshift(list, list)
puts(len(list), len(list[0]), list[1], list[0][1])  #=> 2 2 1 1
array_unshift(list, list, "x")
puts(len(list), len(list[0]), list[1], list[3])  #=> 4 4 x 1
table_clear(list)
other = ["a string that is too long for any inline storage", "b"]
array_unshift(other, other[1], other[0], other[1])
puts(other[0], other[1] == other[4 - 1], other[2])  #=> b true b
