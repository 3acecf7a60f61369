def f()
  def f() return "second" end
  return "first"
end
puts(f(), f(), f())
