# A line that starts with "(" or "[" or "-" starts a new statement.
x = 5
(6)
y = x
[7]
z = y
-1
puts(x, y, z)
a = [1, 2]
b = a [1]
puts (b)
