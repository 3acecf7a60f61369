# write_file makes the file and returns the number of bytes; read_file gives them back.
puts(file_exists?("t.txt"))  #=> false
puts(write_file("t.txt", "ab"))  #=> 2
puts(file_exists?("t.txt"), read_file("t.txt"))  #=> true ab
puts(write_file("t.txt", "c"), read_file("t.txt"))  #=> 1 c
puts(type_of(write_file("t.txt", "x")), type_of(read_file("t.txt")), type_of(file_exists?("t.txt")))
#=> integer string boolean
