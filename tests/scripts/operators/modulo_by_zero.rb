def modulo(a, b) r = a % b return r end
puts(pcall(modulo, 1, 0))
puts(pcall(modulo, 1, 0.0))
puts(pcall(modulo, 1.5, 0))
puts(pcall(modulo, 1, false))
puts(pcall(modulo, 5, 0.00000000000000000001))
puts(pcall(modulo, 5, 0.0000000000000002220446049250313))
puts(pcall(modulo, 5, to_f("nan")))
