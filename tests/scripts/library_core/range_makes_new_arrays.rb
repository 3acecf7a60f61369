# Every call makes an array of its own.
a = range(2)
b = range(2)
array_push(a, "more")
puts(a, b)  #=> [0, 1, more] [0, 1]
