# string_find gives the first and last position of the leftmost occurrence, counted from 1, or nil.
puts(string_find("hello", "ll"), string_find("hello", "h"), string_find("hello", "hello"))  #=> [3, 4] [1, 1] [1, 5]
puts(string_find("abab", "ab"), string_find("aab", "ab"), string_find("hello", "o"))  #=> [1, 2] [2, 3] [5, 5]
puts(string_find("hello", "x"), string_find("hello", "hello!"), string_find("", "a"))  #=> nil nil nil
puts(string_find("hello", ""), string_find("", ""))  #=> [1, 0] [1, 0]
nul = string_char(0)
puts(string_find("a" + nul + "b", "b"), string_find("a" + nul + "b", nul), string_find("ab", nul))
#=> [3, 3] [2, 2] nil
puts(type_of(string_find("a", "a")), type_of(string_find("a", "a")[0]))  #=> array integer
