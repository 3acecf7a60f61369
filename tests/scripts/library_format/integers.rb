# %d and %i write an integer; fractions are cut off, booleans are 1 and 0.
puts(string_format("%s=%d", "x", 3.9), string_format("%d|%i", -3.9, 42), string_format("%d", 0))  #=> x=3 -3|42 0
puts(string_format("%d%d", true, false), string_format("%i", -0.5), string_format("%d", 1000000.0))  #=> 10 0 1000000
puts(string_format("%d", 9223372036854775807), string_format("%i", -9223372036854775807 - 1))
#=> 9223372036854775807 -9223372036854775808
puts(string_format("%d", math_sqrt(-1)), string_format("%d", 0 - math_log(0)), string_format("%d", math_log(0)))
#=> 0 9223372036854775807 -9223372036854775808
