# There are no widths, precisions or other letters.
puts(pcall(string_format, "%x", 255))  #=> [true, false, unsupported format token %x]
puts(pcall(string_format, "%5d", 1))  #=> [true, false, unsupported format token %5]
puts(pcall(string_format, "%.2f", 1.5))  #=> [true, false, unsupported format token %.]
puts(pcall(string_format, "%S", "a"))  #=> [true, false, unsupported format token %S]
puts(pcall(string_format, "% d", 1))  #=> [true, false, unsupported format token % ]
puts(pcall(string_format, "%-5s", "a"))  #=> [true, false, unsupported format token %-]
message = pcall(string_format, "%" + string_char(0), 1)[2]
puts(len(message), string_byte(message, -1))  #=> 27 [0]
