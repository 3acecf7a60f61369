# The empty pattern matches nothing here.
puts(string_gmatch("abc", ""), string_gmatch("", ""))  #=> [] []
