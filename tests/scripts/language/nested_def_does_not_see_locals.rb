y = "global y"
def outer()
  y = "outer y"
  def inner() return y end
  return inner()
end
puts(outer(), y)
def outer_two()
  hidden = 1
  def inner_two() return hidden end
  return inner_two()
end
puts(pcall(outer_two))
