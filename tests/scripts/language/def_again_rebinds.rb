def f() return 1 end
old = f
puts(f())
def f() return 2 end
puts(f(), old())
f = 3
puts(f)
