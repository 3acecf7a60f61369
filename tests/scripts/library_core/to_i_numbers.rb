# Numbers: floats lose their fraction (towards zero), booleans become 1 and 0.
puts(to_i(5), to_i(-5), to_i(0))  #=> 5 -5 0
puts(to_i(3.9), to_i(-3.9), to_i(0.5), to_i(-0.5))  #=> 3 -3 0 0
puts(to_i(true), to_i(false))  #=> 1 0
puts(type_of(to_i(3.9)), type_of(to_i(true)))  #=> integer integer
puts(to_i(1000000.0), to_i(123456789.75))  #=> 1000000 123456789
