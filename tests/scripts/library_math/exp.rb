# e to a power is an integer when it is whole.
puts(math_exp(0), type_of(math_exp(0)))  #=> 1 integer
puts(math_exp(1), math_exp(2), math_exp(-1), math_exp(true))  #=> 2.71828 7.38906 0.367879 2.71828
puts(type_of(math_exp(1)))  #=> float
puts(math_exp(1000), math_exp(-1000), type_of(math_exp(-1000)))  #=> inf 0 integer
puts(math_exp(0.5), math_exp(-0.5))  #=> 1.64872 0.606531
