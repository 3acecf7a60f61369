# The count is checked before anything else; nil arguments count, missing ones do not.
puts(pcall(string_find, nil))  #=> [true, false, string_find expects exactly 2 arguments]
puts(pcall(string_match, nil))  #=> [true, false, string_match expects exactly 2 arguments]
puts(pcall(string_gmatch, nil))  #=> [true, false, string_gmatch expects exactly 2 arguments]
puts(pcall(string_gsub, nil, nil))  #=> [true, false, string_gsub expects exactly 3 arguments]
