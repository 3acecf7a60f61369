def double(x) return x * 2 end
f = double
puts(f(4), type_of(f), f == double)
table = [double, len, puts]
puts(table[0](5), table[1]("abc"))
table[2]("through the table")
m = map_new()
m["go"] = double
puts(m["go"](6))
def pick(name) return m[name] end
puts(pick("go")(7))
def itself(g) return g end
puts(itself(itself)(8))
