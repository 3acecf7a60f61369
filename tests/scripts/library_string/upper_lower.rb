# Only the ASCII letters change case.
puts(string_upper("Hello, World 1!"), string_lower("Hello, World 1!"))  #=> HELLO, WORLD 1! hello, world 1!
puts(string_upper("é ß ü"), string_lower("É À Ü"))  #=> é ß ü É À Ü
puts("[" + string_upper("") + string_lower("") + "]")  #=> []
puts(string_upper("[a-z]@{}`"), string_lower("[A-Z]@{}`"))  #=> [A-Z]@{}` [a-z]@{}`
text = "keep"
string_upper(text)
puts(text, type_of(string_upper(text)))  #=> keep string
puts(len(string_upper("a" + string_char(0) + "b")))  #=> 3
