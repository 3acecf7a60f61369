def f(t, k, v) return table_set(t, k, v) end
puts(pcall(f, [1], "0", 1))
puts(pcall(f, [1], nil, 1))
puts(pcall(f, [1], [0], 1))
puts(pcall(f, [1], -1, 1))
puts(pcall(f, [1], -1.5, 1))
puts(pcall(f, map_new(), [1], 1))
puts(pcall(f, map_new(), puts, 1))
puts(pcall(f, "abc", 0, "x"))
puts(pcall(f, 5, "k", 1))
puts(pcall(f, nil, nil, nil))
def g() table_set([1], 0) end
puts(pcall(g))
def h() table_set([1], 0, 1, 2) end
puts(pcall(h))
table_set([1], "k", 1)
