# A divisor within 2 to the power -52 of zero counts as zero.
def divide(a, b) r = a / b return r end
puts(pcall(divide, 1, 0))
puts(pcall(divide, 1, 0.0))
puts(pcall(divide, 1, -0.0))
puts(pcall(divide, 1.5, false))
puts(pcall(divide, 0, 0))
puts(pcall(divide, 1, 0.00000000000000001))
puts(pcall(divide, 1, -0.00000000000000001))
puts(pcall(divide, 1, 0.0000000000000002220446049250313))
puts(pcall(divide, 1, 0.0000000000000002220446049250314))
puts(pcall(divide, 1, 0.000000000000001))
puts(pcall(divide, 1, -0.000000000000001))
