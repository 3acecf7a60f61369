# Numbers and booleans become floats.
puts(to_f(3), to_f(2.5), to_f(true), to_f(false))  #=> 3 2.5 1 0
puts(type_of(to_f(3)), type_of(to_f(true)))  #=> float float
puts(to_f(9007199254740993) == 9007199254740992.0)  #=> true
puts(to_f(9223372036854775807))  #=> 9.22337e+18
puts(to_f(nil), to_f([1]), to_f(map_new()), to_f(len))  #=> nil nil nil nil
