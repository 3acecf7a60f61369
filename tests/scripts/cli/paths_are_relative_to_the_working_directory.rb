# Also for the script's own file functions.
puts(file_exists?("paths_are_relative_to_the_working_directory.rb"), file_exists?("data.txt"), file_exists?("other.txt"))
puts(read_file("data.txt"))
