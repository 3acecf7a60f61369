# A key may be empty, hold NUL bytes, or be long; all bytes count.
m = map_new()
nul = string_char(0)
table_set(m, "", "empty")
table_set(m, nul, "one")
table_set(m, nul + nul, "two")
table_set(m, "a" + nul + "b", "ab")
table_set(m, "a" + nul + "c", "ac")
table_set(m, string_rep("k", 100000), "long")
puts(len(m), m[""], m[nul], m[nul + nul], m["a" + nul + "b"], m["a" + nul + "c"])  #=> 6 empty one two ab ac
puts(table_has_key(m, "a"), m[string_rep("k", 99999)], m[string_rep("k", 100000)])  #=> false nil long
puts(map_delete(m, nul), len(m), m[nul + nul])  #=> one 5 two
