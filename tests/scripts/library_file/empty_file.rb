# Writing nothing makes or empties a file.
puts(write_file("e.txt", ""), file_exists?("e.txt"), len(read_file("e.txt")))  #=> 0 true 0
write_file("e.txt", "text")
puts(write_file("e.txt", ""), "[" + read_file("e.txt") + "]")  #=> 0 []
puts(append_file("f.txt", ""), file_exists?("f.txt"), "[" + read_file("f.txt") + "]")  #=> 0 true []
