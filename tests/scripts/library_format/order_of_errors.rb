# The format is worked off from left to right: the first thing wrong is reported.
puts(pcall(string_format, "%d %q", "x", 1))  #=> [true, false, value is not numeric]
puts(pcall(string_format, "%q %d", 1, "x"))  #=> [true, false, unsupported format token %q]
puts(pcall(string_format, "%s %d", 1))  #=> [true, false, missing argument for format string]
puts(pcall(string_format, "%d %", "x"))  #=> [true, false, value is not numeric]
puts(pcall(string_format, "%d %", 1))  #=> [true, false, unterminated format token]
puts(pcall(string_format, 5, "x"))  #=> [true, false, string_format expects a string argument]
