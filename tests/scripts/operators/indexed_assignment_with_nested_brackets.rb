a = [1, 0, 2]
b = [[2]]
a[a[1]] = "x"
a[b[0][0]] = [a[0], [1]]
a[len([1])] = "y"
puts(a)
a[0] = a[0] == "x"
puts(a[0])
a[0] == a[1]
puts(a[0])
def f(x)
  y = [x]
  y[y[0]] = 5
  return y
end
puts(f(1))
