puts(pcall(string_rep, 5, 2))  #=> [true, false, string_rep expects a string argument]
puts(pcall(string_rep, nil, "x"))  #=> [true, false, string_rep expects a string argument]
puts(pcall(string_rep, "ab", "2"))  #=> [true, false, string_rep expects a numeric argument]
puts(pcall(string_rep, "", nil))  #=> [true, false, string_rep expects a numeric argument]
