a = [1]
b = a
b[0] = 9
puts(a, b)
m = map_new()
n = m
n["k"] = 1
puts(m)
s = "abc"
t = s
t[0] = "x"
puts(s, t)
