# Entries keep the order in which their keys were first stored; a deleted key starts again at the end.
m = map_new()
m["b"] = 1
m["a"] = 2
m["c"] = 3
puts(m, values(m))  #=> {b: 1, a: 2, c: 3} [1, 2, 3]
m["b"] = 9
puts(m)  #=> {b: 9, a: 2, c: 3}
map_delete(m, "b")
m["b"] = 4
puts(m, values(m), keys(m))  #=> {a: 2, c: 3, b: 4} [2, 3, 4] [a, b, c]
