# A base from 2 to 36; digits above nine are letters in either case.
puts(to_i("ff", 16), to_i("FF", 16), to_i("-fF", 16))  #=> 255 255 -255
puts(to_i("101", 2), to_i("777", 8), to_i("z", 36), to_i("Zz", 36))  #=> 5 511 35 1295
puts(to_i("12", 3), to_i("12", 2), to_i("8", 8), to_i("g", 16))  #=> 5 nil nil nil
puts(to_i("10", 10), to_i("10", 10.9), to_i("10", 2.5))  #=> 10 10 2
puts(to_i("0x1f", 16), to_i("0X1F", 16), to_i("-0x10", 16), to_i(" +0x10", 16))  #=> 31 31 -16 16
puts(to_i("0x", 16), to_i("0xg", 16), to_i("0x10", 8), to_i("0x10", 36))  #=> nil nil nil 42804
puts(to_i("010", 8), to_i("010", 16), to_i("", 16), to_i(" ", 2))  #=> 8 16 nil nil
