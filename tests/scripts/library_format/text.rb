# %s writes the text of any value, %% a per cent sign; everything else is copied.
puts(string_format("%s=%s", "x", 3.5), string_format("100%%"), string_format("plain"))  #=> x=3.5 100% plain
puts("[" + string_format("") + "]", string_format("%s%s%s", 1, 2, 3), string_format("%%%s%%", "a"))  #=> [] 123 %a%
puts(string_format("%s %s %s %s", nil, true, [1, "a"], map_new()))  #=> nil true [1, a] {}
puts(string_format("%s", string_format), string_format("%s", 2.0), "[" + string_format("%s", "") + "]")
#=> [function string_format] 2 []
puts(type_of(string_format("%s", 1)), string_format("%%s"), string_format("%%d%%"))  #=> string %s %d%
