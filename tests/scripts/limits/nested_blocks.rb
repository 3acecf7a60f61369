def answer(source)
  r = pcall(load, source)
  if len(r) == 3 then return string_end_with?(r[2], "stack overflow") end
  return r[1]() == 7
end
puts(load(string_rep("if true then ", 300) + "7" + string_rep(" end", 300))())
puts(answer(string_rep("if true then ", 300000) + "7" + string_rep(" end", 300000)))
def compiles_or_says_so(source)
  r = pcall(load, source)
  if len(r) == 2 then return type_of(r[1]) == "function" end
  return string_end_with?(r[2], "stack overflow")
end
puts(compiles_or_says_so(string_rep("while true do ", 300000) + string_rep("end ", 300000)))
puts(compiles_or_says_so(string_rep("def f() ", 300000) + string_rep("end ", 300000)))
load(string_rep("def f() ", 100) + "return \"innermost\" " + string_rep("end ", 100))()
i = 0
while i < 99 do
  f()
  i = i + 1
end
puts(f())
