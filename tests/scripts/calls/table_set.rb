a = [1, 2]
puts(table_set(a, 4, "x"), a)
puts(table_set(a, 0, nil), table_set(a, 1.9, "float"), table_set(a, true, "true"), table_set(a, -0.5, "zero"), a)
m = map_new()
puts(table_set(m, 1, true), table_set(m, "1", "text"), table_set(m, nil, [a]), m)
t = table_set
puts(t(m, "via", "alias"), m["via"])
inner = [0]
puts(table_set(m, "inner", inner) == inner)
puts(table_set(m, "inner", inner)[0])
e = []
table_set(e, 2, "x")
puts(e)
