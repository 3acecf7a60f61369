def two(a, b) return a + b end
def none() return 1 end
puts(pcall(two))
puts(pcall(two, 1))
puts(pcall(two, 1, 2, 3))
puts(pcall(none, nil))
puts(pcall(two, 1, 2), pcall(none))

two(1)
