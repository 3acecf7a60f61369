def v(name, value)
  print(name)
  return value
end
puts(v("a", 1) + v("b", 2) * v("c", 3))
puts((v("a", 1) + v("b", 2)) * v("c", 3))
puts(v("a", 8) / v("b", 4) / v("c", 2))
puts(v("a", 1) < v("b", 2), v("c", 1) == v("d", 2), v("e", 1) != v("f", 1))
puts([v("a", 1), v("b", 2), v("c", 3)])
puts(v("a", [5, 6])[v("b", 1)], -v("c", 1), not v("d", 1))
