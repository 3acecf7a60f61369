# Whether one string occurs in another, byte for byte.
puts(string_include?("hello", "ell"), string_include?("hello", "h"), string_include?("hello", "hello"))
#=> true true true
puts(string_include?("hello", "elo"), string_include?("hello", "H"), string_include?("hello", "hello!"))
#=> false false false
puts(string_include?("hello", ""), string_include?("", ""), string_include?("", "a"))  #=> true true false
puts(string_include?("a1", "%d+"), string_include?("a.b", "."), string_include?("aab", "ab"))  #=> false true true
puts(type_of(string_include?("a", "a")))  #=> boolean
