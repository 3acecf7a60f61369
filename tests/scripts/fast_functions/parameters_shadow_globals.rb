x = "global"
def f(x) return x end
def g(y) return [x, y] end
puts(f(1), g(2))
def h(puts, len) return puts + len end
puts(h(1, 2))
