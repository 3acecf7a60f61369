# The path must be a string; the content may be anything.
puts(pcall(file_exists?, 5))  #=> [true, false, file_exists? expects a string argument]
puts(pcall(file_exists?, nil))  #=> [true, false, file_exists? expects a string argument]
puts(pcall(read_file, ["a"]))  #=> [true, false, read_file expects a string argument]
puts(pcall(read_file, nil))  #=> [true, false, read_file expects a string argument]
puts(pcall(write_file, 5, "a"))  #=> [true, false, write_file expects a string argument]
puts(pcall(write_file, nil, nil))  #=> [true, false, write_file expects a string argument]
puts(pcall(append_file, true, "a"))  #=> [true, false, append_file expects a string argument]
puts(pcall(append_file, map_new(), "a"))  #=> [true, false, append_file expects a string argument]
