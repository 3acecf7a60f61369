def a() len() end
def b() len(1, 2) end
def c() string_sub("abc") end
def d() math_min() end
def e() time_ms(1) end
def f() array_push([]) end
def g() string_upper(5) end
puts(pcall(a), pcall(b))
puts(pcall(c), pcall(d))
puts(pcall(e), pcall(f))
puts(pcall(g))
