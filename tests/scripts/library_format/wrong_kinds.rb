# Tokens for numbers do not take text; the message is the one of a conversion.
puts(pcall(string_format, "%d", "5"))  #=> [true, false, value is not numeric]
puts(pcall(string_format, "%i", nil))  #=> [true, false, value is not numeric]
puts(pcall(string_format, "%f", "1.5"))  #=> [true, false, value is not numeric]
puts(pcall(string_format, "%f", [1]))  #=> [true, false, value is not numeric]
puts(pcall(string_format, "%d", map_new()))  #=> [true, false, value is not numeric]
puts(pcall(string_format, "%d", len))  #=> [true, false, value is not numeric]
puts(pcall(string_format, nil))  #=> [true, false, string_format expects a string argument]
puts(pcall(string_format, ["%s"], 1))  #=> [true, false, string_format expects a string argument]
