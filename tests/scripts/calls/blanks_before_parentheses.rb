def f (a , b) return a - b end
puts (f (5 , 3))
x = f	(9,4)
puts(x)
