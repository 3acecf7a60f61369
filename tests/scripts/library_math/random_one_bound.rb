# math_random(m): an integer from 1 to m, both included.
math_random_seed(7)
seen = array_new(7, 0)
inside = true
i = 0
while i < 6000
  n = math_random(6)
  inside = inside and n >= 1 and n <= 6 and type_of(n) == "integer"
  seen[n] = seen[n] + 1
  i = i + 1
end
puts(inside, seen[0])  #=> true 0
# A fair die shows each face about a thousand times.
puts(math_min(seen[1], seen[2], seen[3], seen[4], seen[5], seen[6]) > 800)  #=> true
puts(math_max(seen[1], seen[2], seen[3], seen[4], seen[5], seen[6]) < 1200)  #=> true
puts(math_random(1), math_random(1.9), math_random(true))  #=> 1 1 1
