# A script that is run from a file does not read standard input.
puts("a")
