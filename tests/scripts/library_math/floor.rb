# The largest whole number that is not above the argument.
def show(value)
  puts(value, type_of(value))
end
show(math_floor(2.7))  #=> 2 integer
show(math_floor(-2.5))  #=> -3 integer
show(math_floor(5))  #=> 5 integer
show(math_floor(2.0))  #=> 2 integer
show(math_floor(-0.5))  #=> -1 integer
show(math_floor(0.5))  #=> 0 integer
show(math_floor(-0.0))  #=> 0 integer
show(math_floor(true))  #=> 1 integer
show(math_floor(7 / 2))  #=> 3 integer
show(math_floor(math_pow(10, 300)))  #=> 1e+300 float
show(math_floor(math_log(0)))  #=> -inf float
show(math_floor(math_sqrt(-1)))  #=> nan float
