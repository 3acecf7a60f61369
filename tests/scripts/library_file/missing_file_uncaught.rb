puts("before")
read_file("missing.txt")
