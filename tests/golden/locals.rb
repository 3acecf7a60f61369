g = 1
def f(p)
  x = p + g
  if x then y = x end
  list[0] = y
  p = late
  late = p
end
