# The generator is the 64-bit Mersenne Twister; a float is its next output divided by 2 to the power 64.
# Digits are shown one by one, because a float is written with six digits only.
def digits(x)
  text = ""
  i = 0
  while i < 15
    x = x * 10
    digit = math_floor(x)
    text = text + digit
    x = x - digit
    i = i + 1
  end
  return text
end
# 5489 is the engine's customary seed: its first output is 14514284786278117030.
math_random_seed(5489)
puts(digits(math_random()))  #=> 786820954867802
# With it the 10000th output is 9981545732273789042.
i = 0
while i < 9998
  math_random()
  i = i + 1
end
puts(digits(math_random()))  #=> 541100678384732
