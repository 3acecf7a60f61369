puts(pcall(array_unshift, 5, 1))  #=> [true, false, array_unshift expects an array]
puts(pcall(array_unshift, "abc", "d"))  #=> [true, false, array_unshift expects an array]
puts(pcall(array_unshift, map_new(), 1))  #=> [true, false, array_unshift expects an array]
puts(pcall(array_unshift, nil, 1))  #=> [true, false, array_unshift expects an array]
