# 1 followed by 300 zeros, and a long fraction, are ordinary literals.
puts(load("1" + string_rep("0", 300) + ".0")())
puts(load("0." + string_rep("3", 1000))() == 1 / 3)
