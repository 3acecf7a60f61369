# Every load makes a new function value.
a = load("return 1")
b = load("return 1")
c = a
puts(a == b, a == c, a() == b())  #=> false true true
