# A result within one machine epsilon of a whole number is that integer.
puts(math_abs(-0.0000000000000001), type_of(math_abs(-0.0000000000000001)))  #=> 0 integer
puts(math_abs(1.0000000000000002) == 1, type_of(math_abs(1.0000000000000002)))  #=> true integer
puts(type_of(math_abs(1.0000000000000004)))  #=> float
puts(math_exp(-100), type_of(math_exp(-100)))  #=> 0 integer
