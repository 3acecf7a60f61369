x = "global"
def f(x) return x end
def g(f) return f end
def h(puts) puts = puts + 1 return puts end
puts(f("argument"), g(5), h(1), x)
def k(len) return len("abc") end
puts(k(string_upper), len("abc"))
