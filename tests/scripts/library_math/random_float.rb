# Without arguments: a float from 0 up to, but not including, 1.
inside = true
different = false
first = math_random()
i = 0
while i < 1000
  x = math_random()
  inside = inside and x >= 0 and x < 1 and type_of(x) == "float"
  different = different or x != first
  i = i + 1
end
puts(inside, different)  #=> true true
