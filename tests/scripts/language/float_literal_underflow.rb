# A literal too small for a normal double is its nearest double: a subnormal one, or zero.
tiny = load("0." + string_rep("0", 310) + "1")()
puts(tiny == 0.0, tiny > 0, tiny)
none = load("0." + string_rep("0", 400) + "1")()
puts(none == 0.0, none)
