puts(pcall(load, 5))  #=> [true, false, load expects a string argument]
puts(pcall(load, nil))  #=> [true, false, load expects a string argument]
puts(pcall(load, load))  #=> [true, false, load expects a string argument]
puts(pcall(load, "x", 5))  #=> [true, false, load expects a string argument]
puts(pcall(load, "x", nil))  #=> [true, false, load expects a string argument]
# The chunk name is checked before the text is compiled.
puts(pcall(load, "x = (", 5))  #=> [true, false, load expects a string argument]
