# The empty separator splits into single bytes.
puts(string_split("abc", ""), string_split("a", ""), len(string_split("", "")))  #=> [a, b, c] [a] 0
puts(string_split("abc", "", 2), string_split("abc", "", 3), string_split("abc", "", 9))
#=> [a, bc] [a, b, c] [a, b, c]
puts(string_split("ab", "", 3), len(string_split("", "", 2)), len(string_split("hé", "")))  #=> [a, b] 0 3
puts(string_split("abc", "", 1), len(string_split("", "", 1)), string_split("abc", "", 0))  #=> [abc] 1 [a, b, c]
