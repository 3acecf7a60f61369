# to_s gives the text that puts would write, as a string.
puts(to_s(nil), to_s(true), to_s(false))  #=> nil true false
puts(to_s(42), to_s(-7), to_s(0))  #=> 42 -7 0
puts(to_s(-9223372036854775807 - 1))  #=> -9223372036854775808
puts(to_s(1.0), to_s(0.1), to_s(3.14159265), to_s(-0.0))  #=> 1 0.1 3.14159 -0
puts(to_s(100000.0), to_s(1000000.0), to_s(0.0001), to_s(0.00001))  #=> 100000 1e+06 0.0001 1e-05
puts(to_s(123456789.0), to_s(0.30000000000000004))  #=> 1.23457e+08 0.3
puts(to_s(""), to_s("text"))  #=>  text
puts(to_s([1, "a", [nil]]), to_s([]), to_s(map_new()))  #=> [1, a, [nil]] [] {}
puts(to_s(to_s))  #=> [function to_s]
puts(type_of(to_s(1)), type_of(to_s(nil)), type_of(to_s([])))  #=> string string string
puts(len(to_s(1.0)), to_s(1.0) == "1")  #=> 1 true
