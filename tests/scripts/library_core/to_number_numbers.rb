# Whole floats become integers, other floats stay; booleans are 1 and 0.
def show(value)
  number = to_number(value)
  puts(number, type_of(number))
end
show(2)  #=> 2 integer
show(2.0)  #=> 2 integer
show(2.5)  #=> 2.5 float
show(-0.0)  #=> 0 integer
show(true)  #=> 1 integer
show(false)  #=> 0 integer
show(math_pow(10, 300))  #=> 1e+300 float
show(0 - math_log(0))  #=> inf float
show(math_log(0))  #=> -inf float
show(math_sqrt(-1))  #=> nan float
