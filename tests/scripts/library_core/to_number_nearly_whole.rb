# A float within one machine epsilon of a whole number counts as whole.
def show(value)
  number = to_number(value)
  puts(number, type_of(number))
end
show(1.0000000000000002)  #=> 1 integer
show(0.9999999999999999)  #=> 1 integer
show(1.0000000000000004)  #=> 1 float
show(2.0000000000000004)  #=> 2 float
show(0.0000000000000001)  #=> 0 integer
show(0.000000000000001)  #=> 1e-15 float
