# Every occurrence of the separator ends a piece; empty pieces are kept.
def show(list)
  puts(len(list), array_join(list, "|"))
end
show(string_split("a,b,c", ","))  #=> 3 a|b|c
show(string_split("a,,b", ","))  #=> 3 a||b
show(string_split(",a,", ","))  #=> 3 |a|
show(string_split(",", ","))  #=> 2 |
show(string_split("abc", ","))  #=> 1 abc
show(string_split("a--b--c", "--"))  #=> 3 a|b|c
show(string_split("a---b", "--"))  #=> 2 a|-b
show(string_split("aaa", "aa"))  #=> 2 |a
show(string_split("aaaa", "aa"))  #=> 3 ||
show(string_split("one two", " "))  #=> 2 one|two
show(string_split("a.b", "."))  #=> 2 a|b
show(string_split("1%d+2", "%d+"))  #=> 2 1|2
show(string_split("abc", "abcd"))  #=> 1 abc
puts(string_split("", ","), len(string_split("", ",")))  #=> [] 1
puts(type_of(string_split("a", ",")), type_of(string_split("1,2", ",")[0]))  #=> array string
