# Degrees to radians is always a float; radians to degrees may be an integer.
puts(math_rad(180), math_rad(180) == 3.141592653589793, math_rad(0))  #=> 3.14159 true 0
puts(type_of(math_rad(180)), type_of(math_rad(0)))  #=> float float
puts(math_deg(0), type_of(math_deg(0)))  #=> 0 integer
puts(math_deg(3.141592653589793), type_of(math_deg(3.141592653589793)))  #=> 180 integer
puts(math_deg(1), type_of(math_deg(1)), math_rad(1))  #=> 57.2958 float 0.0174533
puts(math_rad(-90), math_rad(true))  #=> -1.5708 0.0174533
