# A NUL byte is a byte like any other: it does not end the text.
nul = string_char(0)
puts(to_i("12" + nul), to_i(nul), to_i(nul + "12"), to_i("12" + nul + "34"))  #=> nil nil nil nil
