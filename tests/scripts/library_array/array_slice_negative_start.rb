# A negative start counts from the end; one that reaches beyond the front gives nothing.
list = [1, 2, 3, 4]
puts(array_slice(list, -1), array_slice(list, -2), array_slice(list, -4))  #=> [4] [3, 4] [1, 2, 3, 4]
puts(array_slice(list, -3, 2), array_slice(list, -1, 5))  #=> [2, 3] [4]
puts(array_slice(list, -5), array_slice(list, -5, 2), array_slice([], -1))  #=> [] [] []
puts(array_slice(list, -9223372036854775807 - 1), array_slice(list, 9223372036854775807))  #=> [] []
