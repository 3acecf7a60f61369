# An operator gives the same on parameters, on globals, on constants and as a condition.
kinds = ["nil", "true", "false", "0", "1", "-7", "9223372036854775807", "0.0", "2.5", "\"\"", "\"10\"", "[]", "[1]"]
operators = ["+", "-", "*", "/", "%", "==", "!=", "<", "<=", ">", ">="]
compared = 0
different = 0
def check(what, one, two)
  load("compared = compared + 1")()
  if one != two or to_s(one) != to_s(two) then
    load("different = different + 1")()
    puts(what, one, two)
  end
end
def truth(r)
  if len(r) == 3 then return r end
  if r[1] then return [true, "yes"] end
  return [true, "no"]
end
o = 0
while o < len(operators) do
  op = operators[o]
  load("def on_parameters(a, b) r = a " + op + " b return r end", "same")()
  load("def as_condition(a, b) if a " + op + " b then return \"yes\" else return \"no\" end end", "same")()
  on_globals = load("return a " + op + " b", "same")
  i = 0
  while i < len(kinds) do
    j = 0
    while j < len(kinds) do
      load("a = " + kinds[i] + " b = " + kinds[j])()
      expected = pcall(on_parameters, a, b)
      what = kinds[i] + " " + op + " " + kinds[j]
      check(what, expected, pcall(on_globals))
      check(what, truth(expected), pcall(as_condition, a, b))
      load("def left_constant(b) r = " + kinds[i] + " " + op + " b return r end", "same")()
      check(what, expected, pcall(left_constant, b))
      load("def right_constant(a) r = a " + op + " " + kinds[j] + " return r end", "same")()
      check(what, expected, pcall(right_constant, a))
      check(what, expected, pcall(load("return " + kinds[i] + " " + op + " " + kinds[j], "same")))
      j = j + 1
    end
    i = i + 1
  end
  o = o + 1
end
puts(compared, different)
