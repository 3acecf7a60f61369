# Text without a point or an e is a decimal integer, any other text a float that may become an integer.
def show(value)
  number = to_number(value)
  puts(number, type_of(number))
end
show("12")  #=> 12 integer
show(" -12")  #=> -12 integer
show("+12")  #=> 12 integer
show("3.0")  #=> 3 integer
show("2.50")  #=> 2.5 float
show("1e3")  #=> 1000 integer
show("1E-1")  #=> 0.1 float
show("-.5")  #=> -0.5 float
show("7.")  #=> 7 integer
show("-0.0")  #=> 0 integer
show(" 1.5")  #=> 1.5 float
show("9223372036854775807")  #=> 9223372036854775807 integer
show("9223372036854775808")  #=> nil nil
show("9223372036854775808.0")  #=> 9223372036854775807 integer
show("1e19")  #=> 1e+19 float
