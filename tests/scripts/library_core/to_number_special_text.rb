# Which reading applies is decided by the characters ".", "e" and "E" alone.
puts(to_number("0x10"), to_number("inf"), to_number("nan"), to_number("0x1p4"))  #=> nil nil nil nil
puts(to_number("0x1e"), to_number("0x1.8"), to_number("0x.8p1"))  #=> 30 1.5 1
puts(type_of(to_number("0x1e")), type_of(to_number("0x.8p1")))  #=> integer integer
