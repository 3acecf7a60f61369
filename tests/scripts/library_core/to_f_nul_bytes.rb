# A NUL byte does not end the text.
nul = string_char(0)
puts(to_f("1.5" + nul), to_f(nul), to_f(nul + "1"), to_f("1" + nul + "2"))  #=> nil nil nil nil
