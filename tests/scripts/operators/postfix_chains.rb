m = map_new()
def adder(n)
  return [n, add_one]
end
def add_one(x) return [x + 1] end
m["k"] = adder
puts(m["k"](1)[0], m["k"](1)[1](5)[0], (adder)(2)[0], [adder][0](3), (([1, 2]))[1])
puts("abc"[1][0], [[["deep"]]][0][0][0][0])
puts((puts)("called"))
