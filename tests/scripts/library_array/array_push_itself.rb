# An array can be pushed into itself: the element is the same array, not a copy.
list = [1]
array_push(list, list)
puts(len(list), len(list[1]), list[1][0], list[1][1][0])  #=> 2 2 1 1
array_push(list[1], "end")
puts(len(list), list[2])  #=> 3 end
array_push(list, list, list)
puts(len(list), len(list[4]))  #=> 5 5
table_clear(list)
puts(list)  #=> []
