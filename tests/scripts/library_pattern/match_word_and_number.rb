# The pattern (%a+)%-(%d+) gives a run of letters and a run of digits with a dash between them.
pattern = "(%a+)%-(%d+)"
puts(string_match("key-42 x", pattern), string_match("a1 b-2", pattern), string_match("ab-12cd", pattern))
#=> [key, 42] [b, 2] [ab, 12]
puts(string_match("a-b-3", pattern), string_match("x: Room-101.", pattern), string_match("1a-2", pattern))
#=> [b, 3] [Room, 101] [a, 2]
puts(string_match("a-1 b-2", pattern), string_match("AbZ-0", pattern), string_match("a--1 c-3", pattern))
#=> [a, 1] [AbZ, 0] [c, 3]
puts(string_match("12-34", pattern), string_match("", pattern), string_match("abc-", pattern))  #=> nil nil nil
puts(string_match("abc", pattern), string_match("-1", pattern), string_match("x1-2", pattern))  #=> nil nil nil
puts(string_match("a -1", pattern), string_match("a- 1", pattern), string_match("a_b-1", pattern))  #=> nil nil [b, 1]
puts(string_match("é-1", pattern), string_match("éa-1", pattern), string_match(pattern, pattern))  #=> nil [a, 1] nil
result = string_match("key-42", pattern)
puts(type_of(result), type_of(result[0]), type_of(result[1]), len(result))  #=> array string string 2
