# Text: every decimal form, with leading white space and sign; the whole text must be used.
puts(to_f("1.5"), to_f("-1.5"), to_f("+1.5"), to_f("42"))  #=> 1.5 -1.5 1.5 42
puts(to_f(".5"), to_f("5."), to_f("1e3"), to_f("1E-2"), to_f("+.5e+1"))  #=> 0.5 5 1000 0.01 5
puts(to_f(" 1.5"), to_f("\t\r\n1.5"), to_f("-0"))  #=> 1.5 1.5 -0
puts(to_f("1.5 "), to_f("1.5x"), to_f("1,5"), to_f("x"), to_f("1 2"))  #=> nil nil nil nil nil
puts(to_f("."), to_f("e5"), to_f("1e"), to_f("1e+"), to_f("+"), to_f("--1"), to_f(" "))  #=> nil nil nil nil nil nil nil
puts(type_of(to_f("42")), type_of(to_f("-0")))  #=> float float
