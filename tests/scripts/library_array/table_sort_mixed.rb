# Any other pair compares by its texts.
list = [10, "a", 9]
table_sort(list)
puts(list)  #=> [9, 10, a]
list = [nil, 1, "b"]
table_sort(list)
puts(list)  #=> [1, b, nil]
list = [[2], [10], [1]]
table_sort(list)
puts(list)  #=> [[10], [1], [2]]
list = [true, "true ", "tru"]
table_sort(list)
puts(array_join(list, "|") + "|")  #=> tru|true|true |
list = ["5", 40, "3"]
table_sort(list)
puts(list)  #=> [3, 40, 5]
# Elements that compare equal keep their order.
list = ["x", 1, 1.0, 0]
table_sort(list)
puts(type_of(list[1]), type_of(list[2]))  #=> integer float
list = ["x", 1.0, 1, 0]
table_sort(list)
puts(type_of(list[1]), type_of(list[2]))  #=> float integer
