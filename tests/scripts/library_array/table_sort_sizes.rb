# Empty, single, sorted, reversed and large arrays.
list = []
table_sort(list)
puts(list)  #=> []
list = ["one"]
table_sort(list)
puts(list)  #=> [one]
list = range(1000, 1, -1)
table_sort(list)
puts(list == range(1, 1000))  #=> true
table_sort(list)
puts(list == range(1, 1000))  #=> true
list = array_new(500, 7)
table_sort(list)
puts(list == array_new(500, 7))  #=> true
