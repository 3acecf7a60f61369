# A call that fails neither draws from the generator nor reseeds it.
math_random_seed(42)
expected = [math_random(), math_random(1000)]
math_random_seed(42)
puts(pcall(math_random, 0)[1], pcall(math_random, 5, 1)[1], pcall(math_random, "x")[1])  #=> false false false
puts(pcall(math_random, 1, nil)[1], pcall(math_random, 1, 2, 3)[1])  #=> false false
puts(pcall(math_random_seed, "x")[1], pcall(math_random_seed, nil)[1], pcall(math_random_seed)[1])
#=> false false false
puts([math_random(), math_random(1000)] == expected)  #=> true
