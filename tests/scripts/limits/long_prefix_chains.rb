def answer(source, value)
  r = pcall(load, source)
  if len(r) == 3 then return string_end_with?(r[2], "stack overflow") end
  return r[1]() == value
end
puts(load(string_rep("-", 500) + "1")(), load(string_rep("!", 501) + "1")())
puts(answer(string_rep("-", 1000000) + "1", 1))
puts(answer(string_rep("not ", 1000001) + "nil", true))
