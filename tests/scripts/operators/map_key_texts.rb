# Keys are texts: values with the same text are the same key.
m = map_new()
m[2] = "integer"
m[2.0] = "float"
puts(m, len(m))
m["2"] = "string"
puts(m)
m[true] = 1
m["true"] = 2
m[nil] = 3
m["nil"] = 4
m[1.0] = 5
m[1.0000001] = 6
m[1] = 7
puts(m)
n = map_new()
n[0] = "a"
n[-0.0] = "b"
n[1234567.0] = "c"
n[1234568.0] = "d"
n[1234567] = "e"
n[0.5] = "f"
n[-3] = "g"
n[to_f("inf")] = "h"
n[to_f("nan")] = "i"
n[-to_f("nan")] = "j"
n[""] = "k"
puts(n)
puts(n["-0"], n["1.23457e+06"], n["inf"], n["nan"], n[""])
