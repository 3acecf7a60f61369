def a(n) def b(m) return m + 1 end return b end
puts(a(1)(2))
def curry()
  return [curry_two]
end
def curry_two(x) return curry_three end
def curry_three(x, y) r = x * y return r end
puts(curry()[0](0)(6, 7))
puts(load("return len")()("four"))
