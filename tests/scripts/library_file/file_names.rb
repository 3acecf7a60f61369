# The path is used as it is: no expansion, relative to the working directory.
write_file("with blank.txt", 1)
write_file("é.txt", 2)
write_file("./dot.txt", 3)
puts(file_exists?("with blank.txt"), file_exists?("é.txt"), file_exists?("dot.txt"))  #=> true true true
puts(file_exists?("*.txt"), file_exists?("~"), file_exists?("$HOME"), file_exists?(" dot.txt"))
#=> false false false false
