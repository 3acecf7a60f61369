# Fractions have all digits of a float, though six are shown.
def near(x, y)
  return math_abs(x - y) < 0.000000000000001
end
puts(near(math_sin(1), 0.8414709848078965), near(math_cos(1), 0.5403023058681398))  #=> true true
puts(near(math_log(2), 0.6931471805599453), near(math_exp(1), 2.718281828459045))  #=> true true
puts(near(math_pow(2, 0.5), 1.4142135623730951), math_sqrt(2) == 1.4142135623730951)  #=> true true
puts(math_abs(-0.1234567890123) == 0.1234567890123, math_clamp(0.1234567890123, 0, 1) == 0.1234567890123)
#=> true true
puts(math_max(0.1234567890123, 0) == 0.1234567890123, math_min(0.1234567890123, 1) == 0.1234567890123)  #=> true true
puts(math_floor(4503599627370495.5) == 4503599627370495, math_ceil(4503599627370494.5) == 4503599627370495)
#=> true true
