def f(x) y = x + 1 return y end
puts(load("return " + string_rep("f(", 300) + "0" + string_rep(")", 300))())
r = pcall(load, "return " + string_rep("f(", 300000) + "0" + string_rep(")", 300000))
if len(r) == 2 then puts(r[1]() == 300000) else puts(string_end_with?(r[2], "stack overflow")) end
