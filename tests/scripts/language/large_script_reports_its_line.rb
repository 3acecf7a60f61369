# Lines are counted far beyond any small integer type.
source = string_rep("x = 1\n", 70000) + "y = nil + x"
puts(pcall(load(source, "big")))
