puts(pcall(array_shift, "abc"))  #=> [true, false, array_shift expects an array]
puts(pcall(array_shift, nil))  #=> [true, false, array_shift expects an array]
puts(pcall(array_shift, 5))  #=> [true, false, array_shift expects an array]
puts(pcall(array_shift, map_new()))  #=> [true, false, array_shift expects an array]
