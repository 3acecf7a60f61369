# Six significant digits, no trailing zeros, an exponent for the very small and the very large.
puts(1.0, 0.1, 2.5, 3.14159265, 100000.0, 999999.0, 1000000.0, 0.0001, 0.00001)
puts(0.1 + 0.2, 123456789.0, 1234567.0, 0.000123456789, 12345.678, -2.50)
puts(-0.0, to_f("inf"), -to_f("inf"), to_f("nan"), -to_f("nan"))
puts(1 / 3, 2 / 3, 1.0 / 1024, to_f("1e300"), to_f("-1e-300"), 9223372036854775807 + 0.0)
