puts(file_exists?("missing.txt"), file_exists?("no/such/file"), file_exists?(""))  #=> false false false
puts(pcall(read_file, "missing.txt"))  #=> [true, false, failed to open file: missing.txt]
puts(pcall(read_file, "no/such/file"))  #=> [true, false, failed to open file: no/such/file]
puts(pcall(read_file, ""))  #=> [true, false, failed to open file: ]
puts(pcall(write_file, "no/such/dir/x", "a"))  #=> [true, false, failed to open file for writing: no/such/dir/x]
puts(pcall(append_file, "no/such/dir/x", "a"))  #=> [true, false, failed to open file for appending: no/such/dir/x]
puts(pcall(write_file, "", "a"))  #=> [true, false, failed to open file for writing: ]
puts(pcall(append_file, "", "a"))  #=> [true, false, failed to open file for appending: ]
