# What follows is not part of either branch.
x = 1
def f(c)
  if c then
    y = 2
  else
    c = c
  end
  y = 3
  return y
end
puts(f(true), f(false)) #=> 3 3
if false then
  x = 4
else
  x = x
end
x = 5
puts(x) #=> 5
