# A token without an argument left is an error, and that is noticed before an unknown token is.
puts(pcall(string_format, "%s %s", 1))  #=> [true, false, missing argument for format string]
puts(pcall(string_format, "%d"))  #=> [true, false, missing argument for format string]
puts(pcall(string_format, "%f"))  #=> [true, false, missing argument for format string]
puts(pcall(string_format, "%x"))  #=> [true, false, missing argument for format string]
puts(pcall(string_format, "%%%s"))  #=> [true, false, missing argument for format string]
