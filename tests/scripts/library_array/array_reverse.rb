# A reversed copy; the array stays as it is.
list = [1, "b", [3, 4]]
puts(array_reverse(list), list)  #=> [[3, 4], b, 1] [1, b, [3, 4]]
puts(array_reverse([]), array_reverse([1]), array_reverse([1, 2]))  #=> [] [1] [2, 1]
backwards = array_reverse(list)
array_push(backwards[0], 5)
backwards[1] = "changed"
puts(list)  #=> [1, b, [3, 4, 5]]
