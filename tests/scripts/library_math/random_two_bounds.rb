# math_random(m, n): an integer from m to n, both included.
inside = true
lowest = 0
highest = 0
i = 0
while i < 2000
  n = math_random(-3, 3)
  inside = inside and n >= -3 and n <= 3 and type_of(n) == "integer"
  lowest = math_min(lowest, n)
  highest = math_max(highest, n)
  i = i + 1
end
puts(inside, lowest, highest)  #=> true -3 3
puts(math_random(3, 3), math_random(-5, -5), math_random(0, 0.9), math_random(true, 1))  #=> 3 -5 0 1
