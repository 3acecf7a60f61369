# string_gsub replaces every occurrence, from left to right, without overlap; the result is the new string alone.
puts(string_gsub("x.y.z", ".", "-"), string_gsub("hello", "l", "L"), string_gsub("hello", "ll", ""))
#=> x-y-z heLLo heo
puts(string_gsub("aaa", "aa", "b"), string_gsub("aaaa", "aa", "b"), string_gsub("aa", "a", "aa"))  #=> ba bb aaaa
puts(string_gsub("abc", "x", "-"), string_gsub("abc", "abc", "-"), string_gsub("abc", "abcd", "-"))  #=> abc - abc
puts("[" + string_gsub("", "a", "b") + "]", "[" + string_gsub("aaa", "a", "") + "]")  #=> [] []
puts(string_gsub("abc", "", "-"), "[" + string_gsub("", "", "-") + "]")  #=> abc []
puts(string_gsub("abc", "b", "%1"), string_gsub("abc", "b", "%%"), string_gsub("abc", "b", "\\0"))  #=> a%1c a%%c a\0c
puts(string_gsub("a%ab", "%a", "-"), string_gsub("key-42", "(%a+)%-(%d+)", "-"))  #=> a-b key-42
text = "keep"
string_gsub(text, "e", "x")
puts(text, type_of(string_gsub(text, "e", "x")))  #=> keep string
