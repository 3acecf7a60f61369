min = -9223372036854775807 - 1
puts(-min, -9223372036854775807, -0, type_of(-5), type_of(-5.0), type_of(-true))
puts(-to_f("inf"), -to_f("nan"), -1.5)
