# All computing is done in floats: integers beyond 2 to the power 53 are rounded, the limits saturate.
puts(math_abs(-9007199254740993))  #=> 9007199254740992
puts(math_floor(9007199254740993))  #=> 9007199254740992
puts(math_max(9007199254740993, 1))  #=> 9007199254740992
puts(math_floor(9223372036854775807))  #=> 9223372036854775807
puts(math_abs(-9223372036854775807 - 1))  #=> 9223372036854775807
puts(math_min(-9223372036854775807 - 1, 0))  #=> -9223372036854775808
puts(math_pow(2, 62), math_pow(2, 63), math_pow(-2, 63))
#=> 4611686018427387904 9223372036854775807 -9223372036854775808
puts(math_pow(2, 64), type_of(math_pow(2, 64)))  #=> 1.84467e+19 float
