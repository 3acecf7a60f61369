# A file of a few megabytes.
text = string_rep("0123456789abcde\n", 200000)
puts(write_file("large.txt", text), read_file("large.txt") == text)  #=> 3200000 true
