puts(pcall(5), pcall(nil), pcall("puts"), pcall([puts]), pcall(map_new(), 1, 2))
puts(len(pcall(5)))
