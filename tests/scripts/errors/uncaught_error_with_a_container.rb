m = map_new()
m["code"] = 42
error([1, "two", m, puts])
