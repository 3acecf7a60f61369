# A directory exists but cannot be opened as a file.
puts(file_exists?("."), file_exists?("/"))  #=> true true
puts(pcall(read_file, "."))  #=> [true, false, failed to open file: .]
puts(pcall(write_file, ".", "a"))  #=> [true, false, failed to open file for writing: .]
puts(pcall(append_file, ".", "a"))  #=> [true, false, failed to open file for appending: .]
