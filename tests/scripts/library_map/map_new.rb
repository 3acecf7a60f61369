# The only way to make a map; every call makes one of its own.
m = map_new()
puts(m, type_of(m), len(m))  #=> {} map 0
other = map_new()
other["a"] = 1
puts(m, other, m == other, m == map_new())  #=> {} {a: 1} false true
