# The count is checked before anything else; nil arguments count, missing ones do not.
puts(pcall(string_format))  #=> [true, false, string_format expects at least 1 arguments]
