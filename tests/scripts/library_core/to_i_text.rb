# Text: leading white space and a sign are accepted, and the whole text must be the number.
puts(to_i("42"), to_i("-42"), to_i("+42"), to_i("0"), to_i("-0"))  #=> 42 -42 42 0 0
puts(to_i(" 42"), to_i("\t\n\r 42"), to_i("  -7"))  #=> 42 42 -7
puts(to_i(string_char(11) + string_char(12) + "8"))  #=> 8
puts(to_i("0000000000000000000000000017"), to_i("010"))  #=> 17 10
puts(to_i("42 "), to_i("42abc"), to_i("4 2"), to_i("abc"))  #=> nil nil nil nil
puts(to_i(""), to_i(" "), to_i("+"), to_i("-"), to_i("--1"), to_i("- 1"))  #=> nil nil nil nil nil nil
puts(to_i("1.5"), to_i("1e3"), to_i("1_000"), to_i("1,000"))  #=> nil nil nil nil
puts(to_i("0x10"), to_i("ff"), to_i("inf"), to_i("nan"), to_i("nil"), to_i("true"))  #=> nil nil nil nil nil nil
puts(type_of(to_i("42")))  #=> integer
