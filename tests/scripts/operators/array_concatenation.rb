a = [1]
b = [2, 3]
c = a + b
puts(c, a, b, [] + [], a + [], a + a)
c[0] = 9
puts(a, c)
inner = [0]
d = [inner] + [inner]
inner[0] = 7
puts(d)
