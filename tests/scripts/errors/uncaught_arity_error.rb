# A wrong argument count is reported for line 0.

def f(a, b)
  c = a return c
end
f(1)
