# The bytes in reverse order; a character of several bytes is turned round too.
puts(string_reverse("abc"), string_reverse("a"), "[" + string_reverse("") + "]")  #=> cba a []
puts(string_byte(string_reverse("é"), 1, 2), string_reverse(string_reverse("né")) == "né")  #=> [169, 195] true
