# Hexadecimal floats: digits, an optional point, and an exponent to the base two after p.
puts(to_f("0x10"), to_f("0X1F"), to_f("-0x1"), to_f(" 0x.8"))  #=> 16 31 -1 0.5
puts(to_f("0x1p4"), to_f("0x1.8p1"), to_f("0xAp-1"))  #=> 16 3 5
puts(to_f("0x"), to_f("0xg"), to_f("0x1p"), to_f("0x1p+"))  #=> nil nil nil nil
