def f(a)
  return a
# no line break after this