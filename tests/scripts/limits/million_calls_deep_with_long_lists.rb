# Functions with long literals and calls of many arguments go as deep as others.
zeros = string_rep("n, ", 40000) + "7"
unused = "if n < 0 then return [" + zeros + "] end "
last = "if n == 0 then return len([" + zeros + "]) + math_max(" + string_rep("n, ", 300) + "8) end "
load("def depth(n) " + unused + last + "return 1 + depth(n - 1) end")()
puts(depth(1000000))
