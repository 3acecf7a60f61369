# Floats beyond the integers give the nearest integer limit; NaN gives 0.
infinity = 0 - math_log(0)
puts(to_i(infinity))  #=> 9223372036854775807
puts(to_i(-infinity))  #=> -9223372036854775808
puts(to_i(math_pow(10, 300)))  #=> 9223372036854775807
puts(to_i(-math_pow(10, 300)))  #=> -9223372036854775808
puts(to_i(math_pow(2, 64)))  #=> 9223372036854775807
puts(to_i(9223372036854775808.0))  #=> 9223372036854775807
puts(to_i(-9223372036854775808.0))  #=> -9223372036854775808
puts(to_i(9223372036854774784.0))  #=> 9223372036854774784
puts(to_i(math_sqrt(-1)))  #=> 0
