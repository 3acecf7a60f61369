x = 1
puts("before")
y = x / 0
puts("after")
