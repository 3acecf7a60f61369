# Beginnings and ends.
puts(string_start_with?("hello", "he"), string_start_with?("hello", "hello"), string_start_with?("hello", "lo"))
#=> true true false
puts(string_end_with?("hello", "lo"), string_end_with?("hello", "hello"), string_end_with?("hello", "he"))
#=> true true false
puts(string_start_with?("hello", ""), string_start_with?("", ""))  #=> true true
puts(string_end_with?("hello", ""), string_end_with?("", ""))  #=> true true
puts(string_start_with?("he", "hello"), string_end_with?("lo", "hello"), string_start_with?("", "a"))
#=> false false false
puts(string_start_with?("Hello", "he"), string_end_with?("", "a"), type_of(string_end_with?("a", "b")))
#=> false false boolean
