puts(pcall(array_reverse, "abc"))  #=> [true, false, value is not an array]
puts(pcall(array_reverse, 5))  #=> [true, false, value is not an array]
puts(pcall(array_reverse, nil))  #=> [true, false, value is not an array]
puts(pcall(array_reverse, map_new()))  #=> [true, false, value is not an array]
