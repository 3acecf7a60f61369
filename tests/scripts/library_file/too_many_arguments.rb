# One argument too many: the count message comes before any complaint about kinds.
puts(pcall(file_exists?, nil, nil))  #=> [true, false, file_exists? expects exactly 1 argument]
puts(pcall(read_file, nil, nil))  #=> [true, false, read_file expects exactly 1 argument]
puts(pcall(write_file, nil, nil, nil))  #=> [true, false, write_file expects exactly 2 arguments]
puts(pcall(append_file, nil, nil, nil))  #=> [true, false, append_file expects exactly 2 arguments]
