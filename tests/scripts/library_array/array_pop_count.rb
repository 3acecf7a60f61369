# With a count: a new array of the last elements, in their order.
list = [1, 2, 3, 4]
puts(array_pop(list, 2), list)  #=> [3, 4] [1, 2]
puts(array_pop(list, 0), list)  #=> [] [1, 2]
puts(array_pop(list, 5), list)  #=> [1, 2] []
puts(array_pop(list, 5), array_pop(list, 0))  #=> [] []
puts(array_pop([1, 2, 3], 1), array_pop([1, 2, 3], 2.9), array_pop([1, 2, 3], true))  #=> [3] [2, 3] [3]
puts(array_pop([1, 2], 9223372036854775807))  #=> [1, 2]
inner = ["x"]
popped = array_pop([1, inner], 1)
array_push(inner, "y")
puts(popped)  #=> [[x, y]]
