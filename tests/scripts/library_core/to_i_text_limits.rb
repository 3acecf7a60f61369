# The integer limits can be read; one more is an overflow, and that gives nil.
puts(to_i("9223372036854775807"))  #=> 9223372036854775807
puts(to_i("-9223372036854775808"))  #=> -9223372036854775808
puts(to_i("9223372036854775808"))  #=> nil
puts(to_i("-9223372036854775809"))  #=> nil
puts(to_i("99999999999999999999999999"))  #=> nil
puts(to_i("7fffffffffffffff", 16))  #=> 9223372036854775807
puts(to_i("8000000000000000", 16))  #=> nil
puts(to_i("-8000000000000000", 16))  #=> -9223372036854775808
