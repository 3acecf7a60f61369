# A copy of a range of elements.
list = [1, 2, 3, 4]
puts(array_slice(list, 0), array_slice(list, 2), array_slice(list, 3))  #=> [1, 2, 3, 4] [3, 4] [4]
puts(array_slice(list, 1, 2), array_slice(list, 0, 1), array_slice(list, 1, 0))  #=> [2, 3] [1] []
puts(array_slice([1, 2, 3], 1, 10), array_slice([1, 2, 3], 0, 9223372036854775807))  #=> [2, 3] [1, 2, 3]
puts(array_slice(list, 4), array_slice(list, 5), array_slice([], 0), array_slice(list, 9, 1))  #=> [] [] [] []
puts(array_slice(list, 0, -1), array_slice(list, 2, -9223372036854775807))  #=> [] []
puts(array_slice(list, 1.9, 2.9), array_slice(list, true, true))  #=> [2, 3] [2]
puts(list)  #=> [1, 2, 3, 4]
