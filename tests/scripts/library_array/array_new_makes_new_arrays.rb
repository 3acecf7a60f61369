a = array_new(2, 0)
b = array_new(2, 0)
a[0] = 1
puts(a, b)  #=> [1, 0] [0, 0]
