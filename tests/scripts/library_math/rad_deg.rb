# Degrees to radians is always a float; radians to degrees may be an integer.
puts(math_rad(180), math_rad(180) == 3.141592653589793, math_rad(0))  #=> 3.14159 true 0
puts(type_of(math_rad(180)), type_of(math_rad(0)))  #=> float float
puts(math_deg(0), type_of(math_deg(0)))  #=> 0 integer
puts(math_deg(3.141592653589793), type_of(math_deg(3.141592653589793)))  #=> 180 integer
puts(math_deg(1), type_of(math_deg(1)), math_rad(1))  #=> 57.2958 float 0.0174533
puts(math_rad(-90), math_rad(true))  #=> -1.5708 0.0174533
# The factors are 0.017453292519943295 and 57.29577951308232.
puts(math_rad(3) == 0.05235987755982989, math_rad(12) == 0.20943951023931956)  #=> true true
puts(math_deg(0.1) == 5.729577951308233, math_deg(15) == 859.4366926962348)  #=> true true
puts(math_deg(270) == 15469.860468532228)  #=> true
puts(math_rad(0.5), math_deg(0.5), math_deg(true), math_rad(true))  #=> 0.00872665 28.6479 57.2958 0.0174533
