# string_gmatch gives all matches in an array, from left to right, without overlap.
puts(string_gmatch("1 22 333", "%d+"), string_gmatch("a1b", "%d+"), string_gmatch("none", "%d+"))
#=> [1, 22, 333] [1] []
puts(string_gmatch("aaaa", "aa"), string_gmatch("aaa", "aa"), string_gmatch("abcabc", "bc"))  #=> [aa, aa] [aa] [bc, bc]
puts(string_gmatch("abc", "x"), string_gmatch("", "a"), string_gmatch("", "%d+"))  #=> [] [] []
puts(string_gmatch("a%db%d", "%d"), string_gmatch("a1b2", "%d"), string_gmatch("a-1", "(%a+)%-(%d+)"))
#=> [%d, %d] [] []
puts(string_gmatch("a.b.c", "."), type_of(string_gmatch("5", "%d+")[0]))  #=> [., .] string
