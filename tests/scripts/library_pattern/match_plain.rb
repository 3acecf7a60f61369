# string_match gives the matched text, which for a plain search is the pattern itself, or nil.
puts(string_match("abc", "b"), string_match("abc", "abc"), string_match("abc", "x"))  #=> b abc nil
puts("[" + string_match("abc", "") + "]", "[" + string_match("", "") + "]", string_match("", "a"))  #=> [] [] nil
puts(string_match("50%a", "%a"), string_match("abc", "%a"), string_match("a1", "%d"))  #=> %a nil nil
puts(string_match("abc", "."), type_of(string_match("a.c", ".")))  #=> nil string
