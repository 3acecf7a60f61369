a = 1
b = 2
a = a + b
a = a - 1
a = 2 * b
a = b / a
a = a % 3
a = a < b
a = a == b
a = -b
a = not b
a = a and b
a = [1, 2]
a = a[0]
a = b
a = 7
a = puts(b)
a = puts
a = len(b)
a = a
b = a
def f(x, y)
  a = x
  a = 1
  x = a
  x = 1
  x = y
  x = a[y]
  return a
end
