# No file has a NUL byte in its name; the name is not cut off there, nor is the message.
write_file("a", "content")
path = "a" + string_char(0) + "b"
puts(file_exists?("a"), file_exists?(path), file_exists?("a" + string_char(0)))  #=> true false false
message = pcall(read_file, path)[2]
puts(message == "failed to open file: " + path, len(message))  #=> true 24
puts(pcall(write_file, path, "x")[2] == "failed to open file for writing: " + path)  #=> true
puts(pcall(append_file, path, "x")[2] == "failed to open file for appending: " + path)  #=> true
puts(read_file("a"))  #=> content
