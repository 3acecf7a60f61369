m = map_new()
m[[1]] = 2
