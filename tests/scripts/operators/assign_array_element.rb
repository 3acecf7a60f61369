a = [1, 2]
a[0] = "x"
a[1.9] = "y"
puts(a)
a[true] = "z"
a[-0.5] = "w"
puts(a)
a[2] = 3
puts(a)
a[5] = 6
puts(a, len(a))
b = a
b[0] = nil
puts(a)
e = []
e[3] = 1
puts(e)
a[0] = [1]
a[0 + 1] = a[0]
puts(a)
