puts(pcall(string_sub, 12345, 1))  #=> [true, false, string_sub expects a string argument]
puts(pcall(string_sub, nil, "x"))  #=> [true, false, string_sub expects a string argument]
puts(pcall(string_sub, "abc", "1"))  #=> [true, false, string_sub expects a numeric argument]
puts(pcall(string_sub, "abc", nil))  #=> [true, false, string_sub expects a numeric argument]
puts(pcall(string_sub, "abc", 1, "2"))  #=> [true, false, string_sub expects a numeric argument]
puts(pcall(string_sub, "abc", 1, nil))  #=> [true, false, string_sub expects a numeric argument]
# The end is checked even where the text is empty.
puts(pcall(string_sub, "", 1, []))  #=> [true, false, string_sub expects a numeric argument]
