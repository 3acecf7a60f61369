# The count is checked before anything else; nil arguments count, missing ones do not.
puts(pcall(file_exists?))  #=> [true, false, file_exists? expects exactly 1 argument]
puts(pcall(read_file))  #=> [true, false, read_file expects exactly 1 argument]
puts(pcall(write_file, nil))  #=> [true, false, write_file expects exactly 2 arguments]
puts(pcall(append_file, nil))  #=> [true, false, append_file expects exactly 2 arguments]
