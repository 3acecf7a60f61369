# However a string came to be shared, changing one variable leaves the others alone.
kept = []
def keep(v) array_push(kept, v) return "!" end
s = "a"
s = s + keep(s)
s = s + "b"
puts(s, kept)
list = [s]
s = s + "c"
puts(s, list)
x = list[0]
x[0] = "Z"
x = x + "?"
puts(x, list)
m = map_new()
k = "key"
m[k] = k
k[0] = "X"
k = k + "+"
puts(k, m, keys(m))
def fallback() s = s + "d" return s end
puts(fallback(), s)
def literal() t = "abc" t = t + "d" u = t t[0] = "X" return [t, u] end
puts(literal(), literal())
def parameter(p) p = p + "1" p = p + "2" return p end
puts(parameter(s), s, parameter("lit"), parameter("lit"))
def loop(p)
  seen = []
  i = 0
  while i < 3 do
    array_push(seen, p)
    p = p + i
    i = i + 1
  end
  return [seen, p]
end
puts(loop("p"))
