puts(pcall(keys, "abc"))  #=> [true, false, keys expects an array or map]
puts(pcall(keys, 5))  #=> [true, false, keys expects an array or map]
puts(pcall(keys, nil))  #=> [true, false, keys expects an array or map]
puts(pcall(keys, keys))  #=> [true, false, keys expects an array or map]
