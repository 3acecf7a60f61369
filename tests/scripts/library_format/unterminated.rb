# A per cent sign at the very end is an error, with or without arguments.
puts(pcall(string_format, "abc%"))  #=> [true, false, unterminated format token]
puts(pcall(string_format, "%", 1))  #=> [true, false, unterminated format token]
puts(pcall(string_format, "%%%"))  #=> [true, false, unterminated format token]
puts(pcall(string_format, "%s%", 1, 2))  #=> [true, false, unterminated format token]
