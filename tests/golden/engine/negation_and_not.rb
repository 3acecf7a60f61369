def f(a)
  x = -a
  x = -5
  x = -2.5
  x = -"text"
  x = - -5
  x = not a
  x = not not a
  x = not 1
  x = !(a and x)
  return -x
end
