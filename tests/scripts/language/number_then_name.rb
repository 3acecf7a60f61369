# There are no exponents, prefixes or separators: a number ends where its digits end.
e5 = "e5"
x10 = "x10"
_000 = "_000"
x = 1e5 y = 0x10 z = 1_000
puts(x, y, z)
puts(load("1e5")(), load("0x10")(), load("12abc = 4")())
