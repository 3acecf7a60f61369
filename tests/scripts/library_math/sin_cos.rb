# Sine and cosine of radians are always floats.
puts(math_sin(0), math_cos(0))  #=> 0 1
puts(type_of(math_sin(0)), type_of(math_cos(0)))  #=> float float
puts(math_sin(1), math_cos(1), math_sin(-1))  #=> 0.841471 0.540302 -0.841471
puts(math_sin(true), math_cos(false))  #=> 0.841471 1
puts(math_sin(0 - math_log(0)), math_cos(math_log(0)))  #=> nan nan
