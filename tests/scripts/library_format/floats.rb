# %f writes a float as puts does: six digits, no trailing zeros.
puts(string_format("%f", 0.1), string_format("%f", 2.0), string_format("%f", 3.14159265))  #=> 0.1 2 3.14159
puts(string_format("%f", 1234567.0), string_format("%f", 0.00001), string_format("%f", math_pow(10, 20)))
#=> 1.23457e+06 1e-05 1e+20
puts(string_format("%f", 5), string_format("%f", true), string_format("%f", 123456789))  #=> 5 1 1.23457e+08
puts(string_format("%f", math_sqrt(-1)), string_format("%f", -math_sqrt(-1)), string_format("%f", math_log(0)))
#=> nan nan -inf
puts(string_format("%f", -0.0), string_format("%s", -0.0), string_format("%d", -0.0))  #=> -0 -0 0
