# The bounds may be the integer limits.
largest = 9223372036854775807
smallest = -9223372036854775807 - 1
puts(math_random(largest, largest), math_random(smallest, smallest))
#=> 9223372036854775807 -9223372036854775808
negative = 0
positive = 0
i = 0
while i < 1000
  n = math_random(smallest, largest)
  if n < 0
    negative = negative + 1
  else
    positive = positive + 1
  end
  i = i + 1
end
puts(negative > 350, positive > 350)  #=> true true
puts(type_of(math_random(largest)), type_of(math_random(smallest, 0)))  #=> integer integer
