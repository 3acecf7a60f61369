# Keys are compared by their text.
m = map_new()
m["1"] = "one"
m["2.5"] = "two and a half"
m["true"] = "yes"
m["nil"] = "nothing"
puts(map_delete(m, 1), map_delete(m, 2.5), map_delete(m, true), map_delete(m, nil), m)
#=> one two and a half yes nothing {}
