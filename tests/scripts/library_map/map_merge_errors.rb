puts(pcall(map_merge, [], map_new()))  #=> [true, false, value is not a map]
puts(pcall(map_merge, map_new(), []))  #=> [true, false, value is not a map]
puts(pcall(map_merge, nil, nil))  #=> [true, false, value is not a map]
puts(pcall(map_merge, map_new(), "abc"))  #=> [true, false, value is not a map]
