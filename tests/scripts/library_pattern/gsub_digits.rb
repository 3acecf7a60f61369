# %d replaces every digit, %d+ every run of digits.
puts(string_gsub("a1b22", "%d", "#"), string_gsub("a1b22", "%d+", "#"))  #=> a#b## a#b#
puts(string_gsub("123", "%d", ""), string_gsub("x123y", "%d+", ""), string_gsub("123", "%d+", "n"))  #=>  xy n
puts(string_gsub("none", "%d", "#"), string_gsub("none", "%d+", "#"), "[" + string_gsub("", "%d", "#") + "]")
#=> none none []
puts(string_gsub("12", "%d", "34"), string_gsub("1-2", "%d+", "%d"), string_gsub("5%d", "%d", "x"))  #=> 3434 %d-%d x%d
puts(string_gsub("5%d+", "%d+", "x"))  #=> x%d+
