# A power is an integer when it is whole.
def show(value)
  puts(value, type_of(value))
end
show(math_pow(2, 10))  #=> 1024 integer
show(math_pow(2, 2.0))  #=> 4 integer
show(math_pow(2, -1))  #=> 0.5 float
show(math_pow(2, 0.5))  #=> 1.41421 float
show(math_pow(2.5, 2))  #=> 6.25 float
show(math_pow(0, 0))  #=> 1 integer
show(math_pow(0, -1))  #=> inf float
show(math_pow(-2, 3))  #=> -8 integer
show(math_pow(-8, 1 / 3))  #=> nan float
show(math_pow(10, 18))  #=> 1000000000000000000 integer
show(math_pow(10, 19))  #=> 1e+19 float
show(math_pow(true, false))  #=> 1 integer
show(math_pow(10, 400))  #=> inf float
