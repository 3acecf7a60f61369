# A container that holds itself can still be compared with one that differs early.
a = [1]
a[1] = a
b = [2]
b[1] = b
puts(a == b, a == [1], len(a[1][1][1]))
# Such a ring lives until it is opened.
a[1] = nil
b[1] = nil
