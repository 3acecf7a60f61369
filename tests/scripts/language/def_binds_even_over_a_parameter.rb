def f(g)
  def g() return "new" end
  return g
end
puts(f(1), g())
