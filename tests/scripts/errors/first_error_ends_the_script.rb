a = [1, 2]
puts(a[5])
a[0] = a[1] - nil
puts("never", a)
error("never")
