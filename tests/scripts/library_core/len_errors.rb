# Numbers, booleans, nil and functions have no length.
puts(pcall(len, 5))  #=> [true, false, len expects a string, array, or map]
puts(pcall(len, 2.5))  #=> [true, false, len expects a string, array, or map]
puts(pcall(len, true))  #=> [true, false, len expects a string, array, or map]
puts(pcall(len, nil))  #=> [true, false, len expects a string, array, or map]
puts(pcall(len, len))  #=> [true, false, len expects a string, array, or map]
