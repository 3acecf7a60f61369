x = 1
y = 2
z = x + "abc
puts(z)
