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
