# The smallest whole number that is not below the argument.
def show(value)
  puts(value, type_of(value))
end
show(math_ceil(2.1))  #=> 3 integer
show(math_ceil(-2.5))  #=> -2 integer
show(math_ceil(5))  #=> 5 integer
show(math_ceil(2.0))  #=> 2 integer
show(math_ceil(-0.5))  #=> 0 integer
show(math_ceil(false))  #=> 0 integer
show(math_ceil(math_pow(10, 300)))  #=> 1e+300 float
show(math_ceil(0 - math_log(0)))  #=> inf float
