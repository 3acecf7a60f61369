# One byte more than a pattern that is known: found letter by letter.
puts(string_match("5x", "%d+x"))
puts(string_match("a-1 ", "(%a+)%-(%d+) "))
puts(string_match("in a%d+ there", "a%d+"))
puts(string_gmatch("5 x", "%d+ "))
puts(string_gmatch("%a+ x %a+ ", "%a+ "))
puts(string_gsub("12 ", "%d+ ", "z"))
puts(string_gsub("a%d+x1", "%d+x", "-"))
