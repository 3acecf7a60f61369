def v(name, value)
  print(name, " ")
  return value
end
def three(a, b, c) x = [a, b, c] return x end
puts(v("f", three)(v("a", 1), v("b", 2), v("c", 3)))
puts(three(v("1", 1), three(v("2", 2), v("3", 3), v("4", 4)), v("5", 5)))
