puts(1)

puts(2)
x = nil + 1
