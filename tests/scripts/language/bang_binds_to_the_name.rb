# "a!=b" is the name "a!", then "=", then "b"; a blank or a number in front of "!=" makes it a comparison.
a = 1
b = 3
a! = 10
a!=b
puts(a, a!)
puts(a !=b, a != b, 5!=4, 5!=5, (a)!=b, "x"!="x")
nil!=7
puts(nil!)
