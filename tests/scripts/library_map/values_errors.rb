puts(pcall(values, "abc"))  #=> [true, false, values expects an array or map]
puts(pcall(values, 5))  #=> [true, false, values expects an array or map]
puts(pcall(values, nil))  #=> [true, false, values expects an array or map]
puts(pcall(values, true))  #=> [true, false, values expects an array or map]
