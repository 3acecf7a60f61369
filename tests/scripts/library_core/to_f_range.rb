# Overflow and inexact underflow are range errors, and those give nil.
puts(to_f("1.7976931348623157e308"))  #=> 1.79769e+308
puts(to_f("1e309"), to_f("-1e309"), to_f("1e400"))  #=> nil nil nil
puts(to_f("2.2250738585072014e-308"))  #=> 2.22507e-308
puts(to_f("1e-310"), to_f("4.9e-324"), to_f("1e-400"), to_f("-1e-400"))  #=> nil nil nil nil
puts(to_f("0e400"), to_f("0e-400"))  #=> 0 0
# This one is below the normal floats but exact.
puts(to_f("0x1p-1074"))  #=> 4.94066e-324
