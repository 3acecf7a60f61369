# The same seed gives the same sequence, of floats and of integers alike; math_random_seed returns nil.
def sequence(seed)
  math_random_seed(seed)
  list = []
  i = 0
  while i < 20
    array_push(list, math_random(), math_random(6), math_random(-100, 100))
    i = i + 1
  end
  return list
end
puts(math_random_seed(42))  #=> nil
puts(sequence(42) == sequence(42), sequence(0) == sequence(0), sequence(-1) == sequence(-1))  #=> true true true
puts(sequence(42) == sequence(43), sequence(0) == sequence(-1))  #=> false false
# A seed is an integer: fractions are cut off, booleans are 1 and 0.
puts(sequence(1.9) == sequence(1), sequence(true) == sequence(1), sequence(false) == sequence(0))
#=> true true true
