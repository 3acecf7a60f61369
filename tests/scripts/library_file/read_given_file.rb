# A file that was there before the script: read and split into lines.
lines = string_split(read_file("given.txt"), "\n")
puts(len(lines), lines[0], lines[1], lines[2] == "")  #=> 3 first line second line true
