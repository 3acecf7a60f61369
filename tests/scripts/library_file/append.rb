# append_file adds to the end and makes the file when it is missing.
puts(append_file("log.txt", "one\n"), file_exists?("log.txt"))  #=> 4 true
puts(append_file("log.txt", "two\n"), read_file("log.txt"))
#=> 4 one
#=> two
#=>
puts(append_file("log.txt", ""), len(read_file("log.txt")), type_of(append_file("log.txt", "x")))  #=> 0 8 integer
write_file("log.txt", "new")
append_file("log.txt", 12)
puts(read_file("log.txt"))  #=> new12
