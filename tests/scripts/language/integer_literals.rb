puts(0, 7, 007, 42, 9223372036854775807, 00)
puts(type_of(0), type_of(9223372036854775807))
# The sign is an operator, so the smallest integer is computed.
puts(-5, -0, -9223372036854775807 - 1)
