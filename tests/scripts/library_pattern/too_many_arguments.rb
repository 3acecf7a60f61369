# One argument too many: the count message comes before any complaint about kinds.
puts(pcall(string_find, nil, nil, nil))  #=> [true, false, string_find expects exactly 2 arguments]
puts(pcall(string_match, nil, nil, nil))  #=> [true, false, string_match expects exactly 2 arguments]
puts(pcall(string_gmatch, nil, nil, nil))  #=> [true, false, string_gmatch expects exactly 2 arguments]
puts(pcall(string_gsub, nil, nil, nil, nil))  #=> [true, false, string_gsub expects exactly 3 arguments]
