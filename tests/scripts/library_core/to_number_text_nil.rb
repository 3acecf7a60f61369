# Text that is no number gives nil.
puts(to_number(""), to_number(" "), to_number("abc"), to_number("1x"), to_number("1 "))  #=> nil nil nil nil nil
puts(to_number("1.5x"), to_number("1.5 "), to_number("."), to_number("e"), to_number("1e"))  #=> nil nil nil nil nil
puts(to_number("1.2.3"), to_number("1e400"), to_number("1e-400"), to_number("--1.5"))  #=> nil nil nil nil
puts(to_number("1.5" + string_char(0)), to_number("1" + string_char(0)))  #=> nil nil
puts(to_number(nil), to_number([]), to_number(map_new()), to_number(len))  #=> nil nil nil nil
