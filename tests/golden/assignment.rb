total = 0
list[0] = total + 1
list[list[0]] = [total]
a[1] b = 2
