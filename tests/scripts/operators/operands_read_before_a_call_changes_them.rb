# Every operand has the value that it had when its turn came.
def set(v) load("x = " + v)() return v end
def plus() return x + set(10) end
def minus() return x - set(20) - x end
def less() return x < set(5) end
def equal() return x == set(6) end
def listed() return [x, set(7), x] end
def passed(a, b, c) r = [a, b, c] return r end
def called() return passed(x, set(8), x) end
def joined() return x + ":" + set(9) + ":" + x end
def local_fallback(c) if c then x = 0 end return x + set(11) + x end
x = 1
puts(plus(), x)
puts(minus(), x)
puts(less(), x)
puts(equal(), x)
puts(listed(), called(), joined())
puts(local_fallback(false), x)
a = [1, 2, 3]
def replace() load("a = [7, 8, 9]")() return 0 end
def indexed() return a[replace()] end
puts(indexed(), a)
a = [1, 2, 3]
puts(a[replace()] + a[0], a)
def condition() if x == set(12) then return "equal" else return "different" end end
puts(condition(), x)
