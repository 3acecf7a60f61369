# Without a count: the last element, or nil from an empty array.
list = [1, [2], "three"]
puts(array_pop(list), list)  #=> three [1, [2]]
puts(array_pop(list), list)  #=> [2] [1]
puts(array_pop(list), list)  #=> 1 []
puts(array_pop(list), list)  #=> nil []
puts(array_pop([nil]))  #=> nil
