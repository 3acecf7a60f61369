# Infinity and NaN can be written out, in any case.
puts(to_f("inf"), to_f("-inf"), to_f("+INF"), to_f("Infinity"), to_f("-infinity"))  #=> inf -inf inf inf -inf
puts(to_f("nan"), to_f("-nan"), to_f("NaN"), to_f("nan(12)"))  #=> nan nan nan nan
puts(to_f("infx"), to_f("infinit"), to_f("in"), to_f("nanx"), to_f("nan("))  #=> nil nil nil nil nil
puts(type_of(to_f("inf")), type_of(to_f("nan")))  #=> float float
