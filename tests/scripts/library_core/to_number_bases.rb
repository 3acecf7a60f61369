# With a base the text is an integer in that base.
puts(to_number("ff", 16), to_number("0xff", 16), to_number("1e", 16), to_number("-101", 2))  #=> 255 255 30 -5
puts(to_number("1.5", 10), to_number("1e3", 10), to_number("", 10), to_number("2", 2))  #=> nil nil nil nil
puts(to_number("9223372036854775808", 10), to_number("zz", 36), to_number("11", 2.9))  #=> nil 1295 3
puts(type_of(to_number("ff", 16)))  #=> integer
puts(to_number(5, 99), to_number(2.0, 0), to_number(nil, 1), to_number([], 1))  #=> 5 2 nil nil
