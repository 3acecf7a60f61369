puts(pcall(map_clone, []))  #=> [true, false, value is not a map]
puts(pcall(map_clone, "abc"))  #=> [true, false, value is not a map]
puts(pcall(map_clone, nil))  #=> [true, false, value is not a map]
puts(pcall(map_clone, 5))  #=> [true, false, value is not a map]
