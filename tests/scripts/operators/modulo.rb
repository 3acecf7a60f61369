# The result has the sign of the left operand.
puts(7 % 3, -7 % 3, 7 % -3, -7 % -3, 6 % 3, -6 % 3, 0 % 5)
puts(type_of(7 % 3), type_of(7 % 3.0), type_of(7.0 % 3), type_of(7 % true))
puts((-9223372036854775807 - 1) % -1, (-9223372036854775807 - 1) % 9223372036854775807, 9223372036854775807 % 10)
puts(7.5 % 2, -7.5 % 2, 7.5 % -2, 5 % 0.5, 5 % 2.0, -6.0 % 3, 5.5 % 1.5)
puts(5 % to_f("inf"), to_f("inf") % 2, 5 % to_f("nan"), 5 % true)
