# Content that is no string is written as its text.
m = map_new()
m["k"] = [1, "a"]
puts(write_file("a.txt", 42), read_file("a.txt"))  #=> 2 42
puts(write_file("a.txt", 1.50), read_file("a.txt"))  #=> 3 1.5
puts(write_file("a.txt", nil), read_file("a.txt"))  #=> 3 nil
puts(write_file("a.txt", true), read_file("a.txt"))  #=> 4 true
puts(write_file("a.txt", m), read_file("a.txt"))  #=> 11 {k: [1, a]}
puts(append_file("a.txt", [2.0]), read_file("a.txt"))  #=> 3 {k: [1, a]}[2]
puts(write_file("a.txt", write_file), read_file("a.txt"))  #=> 21 [function write_file]
