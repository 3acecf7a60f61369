def callee(a, b) return a end
def calls(f, x)
  callee(1, 2)
  y = callee(x, f)
  f()
  f(x)
  y = f(x + 1, y)
  y = callee(callee(1, x), callee(f(2), 3))
  y = f(1)(2)
  y = x[0](y)
  y = [callee(1, 2), f]
  return callee(y, x)
end
def keeps_globals(f)
  return value + f() + value
end
def keeps_locals(f)
  x = 1
  return x + f(x) + x
end
value = 3
calls(calls, 4)
