puts(pcall(array_slice, "abc", 0))  #=> [true, false, value is not an array]
puts(pcall(array_slice, map_new(), 0))  #=> [true, false, value is not an array]
puts(pcall(array_slice, nil, "x", "y"))  #=> [true, false, value is not an array]
puts(pcall(array_slice, [1], "0"))  #=> [true, false, array_slice expects a numeric argument]
puts(pcall(array_slice, [1], nil))  #=> [true, false, array_slice expects a numeric argument]
puts(pcall(array_slice, [1], 0, "1"))  #=> [true, false, array_slice expects a numeric argument]
# A count is checked even where nothing would be taken.
puts(pcall(array_slice, [], 5, nil))  #=> [true, false, array_slice expects a numeric argument]
