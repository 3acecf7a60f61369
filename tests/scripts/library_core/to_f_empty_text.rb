# The empty text is a float zero here, although to_i gives nil for it.
puts(to_f(""), type_of(to_f("")), to_i(""))  #=> 0 float nil
