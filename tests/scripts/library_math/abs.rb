def show(value)
  puts(value, type_of(value))
end
show(math_abs(-3))  #=> 3 integer
show(math_abs(3))  #=> 3 integer
show(math_abs(-2.5))  #=> 2.5 float
show(math_abs(-2.0))  #=> 2 integer
show(math_abs(true))  #=> 1 integer
show(math_abs(0))  #=> 0 integer
show(math_abs(math_log(0)))  #=> inf float
show(math_abs(math_sqrt(-1)))  #=> nan float
