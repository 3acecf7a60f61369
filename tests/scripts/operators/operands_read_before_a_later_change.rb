# The left operand's value is taken before the right operand changes the variable.
x = 1
def set_x(v) load("x = " + v)() return 10 end
puts(x + set_x(2), x)
puts([x, set_x(3), x])
def f()
  y = 1
  def bump() return 5 end
  return y + bump() + y
end
puts(f())
