# The pattern %d+ gives the first run of digits as a string.
puts(string_match("v10.2", "%d+"), string_match("2024-05-01", "%d+"), string_match("x007", "%d+"))  #=> 10 2024 007
puts(string_match("abc", "%d+"), string_match("", "%d+"), type_of(string_match("5", "%d+")))  #=> nil nil string
