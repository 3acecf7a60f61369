# Every key has a text; equal texts are equal keys.
m = map_new()
table_set(m, 2, "integer")
table_set(m, 2.0, "float")
puts(m)  #=> {2: float}
table_set(m, 1.0000001, "rounded")
puts(table_get(m, 1), table_get(m, "1"))  #=> rounded rounded
table_set(m, 1234567.0, "large")
puts(table_has_key(m, "1.23457e+06"), table_has_key(m, 1234567))  #=> true false
nan = math_sqrt(-1)
table_set(m, nan, "nan")
table_set(m, -nan, "same")
table_set(m, math_log(0), "infinite")
puts(m["nan"], m["-inf"], len(m))  #=> same infinite 5
table_set(m, -9223372036854775807 - 1, "smallest")
puts(m["-9223372036854775808"])  #=> smallest
table_set(m, -0.0, "minus zero")
puts(m["-0"], m[0])  #=> minus zero nil
