# Statements follow each other without any separator.
x = 1 y = 2 puts(x + y) puts(x - y)
if x then z = 3 end puts(z) while z < 5 do z = z + 1 end puts(z)
def f() return 1 end def g() return 2 end puts(f() + g())
