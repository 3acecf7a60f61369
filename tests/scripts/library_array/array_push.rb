# array_push appends in order and returns the array itself.
list = [1]
puts(array_push(list, 2))  #=> [1, 2]
puts(array_push(list, "a", nil, [3]))  #=> [1, 2, a, nil, [3]]
puts(list)  #=> [1, 2, a, nil, [3]]
same = array_push(list, "last")
array_push(same, "really last")
puts(len(list), list[6])  #=> 7 really last
puts(array_push(array_push([], 1), 2))  #=> [1, 2]
