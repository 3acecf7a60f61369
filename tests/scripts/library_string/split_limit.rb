# At most so many pieces: the last one keeps its separators. A limit below one is none.
puts(string_split("a,b,c", ",", 2), string_split("a,b,c", ",", 3), string_split("a,b,c", ",", 10))
#=> [a, b,c] [a, b, c] [a, b, c]
puts(len(string_split("a,b,c", ",", 2)), string_split("a,b,c", ",", 2)[1])  #=> 2 b,c
puts(string_split("a,b,c", ",", 1), len(string_split("a,b,c", ",", 1)))  #=> [a,b,c] 1
puts(len(string_split("a,b,c", ",", 0)), len(string_split("a,b,c", ",", -5)))  #=> 3 3
puts(string_split("a,b,", ",", 2)[1], len(string_split(",,,", ",", 2)), string_split(",,,", ",", 2)[1])  #=> b, 2 ,,
puts(len(string_split("", ",", 1)), len(string_split("", ",", 2)), len(string_split("a", ",", 2)))  #=> 1 1 1
puts(len(string_split("a,b,c", ",", 2.9)), len(string_split("a,b,c", ",", true)))  #=> 2 1
