# Nesting either works or is refused with a message.
def answer(source)
  r = pcall(load, source)
  if len(r) == 3 then return string_end_with?(r[2], "stack overflow") end
  return r[1]() == 1
end
puts(load(string_rep("(", 500) + "1" + string_rep(")", 500))())
puts(answer(string_rep("(", 20000) + "1" + string_rep(")", 20000)))
puts(answer(string_rep("(", 1000000) + "1" + string_rep(")", 1000000)))
puts(pcall(load, "(1"))
