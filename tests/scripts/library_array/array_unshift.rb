# Values go to the front in the order given; the result is the array itself.
list = [3]
puts(array_unshift(list, 1, 2))  #=> [1, 2, 3]
puts(array_unshift(list, 0), list)  #=> [0, 1, 2, 3] [0, 1, 2, 3]
puts(array_unshift([], "a", "b", nil))  #=> [a, b, nil]
same = array_unshift(list, "first")
array_push(same, "last")
puts(list)  #=> [first, 0, 1, 2, 3, last]
