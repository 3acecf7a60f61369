# The natural logarithm is always a float; zero and negative arguments are no errors.
puts(math_log(1), type_of(math_log(1)))  #=> 0 float
puts(math_log(2), math_log(10), math_log(0.5))  #=> 0.693147 2.30259 -0.693147
puts(math_log(0), math_log(false), math_log(-1))  #=> -inf -inf nan
puts(type_of(math_log(0)), type_of(math_log(-1)))  #=> float float
