# Wrapping, the zero tolerance, comparing through doubles, NaN: the same wherever the operands stand.
min = -9223372036854775807 - 1
inf = to_f("inf")
nan = to_f("nan")
epsilon = 0.00000000000000022204460492503131
numbers = ["min", "9223372036854775807", "-1", "1", "9007199254740993", "9007199254740992", "9007199254740992.0"]
numbers = numbers + ["epsilon", "0.0000000000000004", "1.0000000000000002", "-0.0", "true", "false", "inf", "nan"]
operators = ["+", "-", "*", "/", "%", "==", "!=", "<", "<=", ">", ">="]
compared = 0
different = 0
def same?(one, two)
  if type_of(one[1]) != type_of(two[1]) then return false end
  if one[1] != one[1] then return two[1] != two[1] end
  return one == two and to_s(one) == to_s(two)
end
def check(what, one, two)
  load("compared = compared + 1")()
  if not same?(one, two) then
    load("different = different + 1")()
    puts(what, one, two)
  end
end
def truth(r)
  if len(r) == 3 then return r end
  if r[1] then return [true, "yes"] end
  return [true, "no"]
end
def make(header, body)
  load("def " + header + " " + body + " end", "same")()
end
o = 0
while o < len(operators) do
  operation = "a " + operators[o] + " b"
  make("stored(a, b)", "r = " + operation + " return r")
  make("returned(a, b)", "return " + operation)
  make("in_place(a, b)", "a = " + operation + " return a")
  make("condition(a, b)", "if " + operation + " then return 'yes' else return 'no' end")
  make("negated(a, b)", "if not (" + operation + ") then return 'no' else return 'yes' end")
  make("loop(a, b)", "while " + operation + " do return 'yes' end return 'no'")
  on_globals = load("return " + operation, "same")
  i = 0
  while i < len(numbers) do
    make("constant_left(b)", "r = " + numbers[i] + " " + operators[o] + " b return r")
    j = 0
    while j < len(numbers) do
      load("a = " + numbers[i] + " b = " + numbers[j])()
      make("constant_right(a)", "r = a " + operators[o] + " " + numbers[j] + " return r")
      make("condition_right(a)", "if a " + operators[o] + " " + numbers[j] + " then return 'yes' else return 'no' end")
      expected = pcall(stored, a, b)
      what = numbers[i] + " " + operators[o] + " " + numbers[j]
      check(what, expected, pcall(returned, a, b))
      check(what, expected, pcall(in_place, a, b))
      check(what, expected, pcall(on_globals))
      check(what, expected, pcall(constant_left, b))
      check(what, expected, pcall(constant_right, a))
      check(what, expected, pcall(load("return " + what, "same")))
      check(what, truth(expected), pcall(condition, a, b))
      check(what, truth(expected), pcall(condition_right, a))
      check(what, truth(expected), pcall(negated, a, b))
      check(what, truth(expected), pcall(loop, a, b))
      j = j + 1
    end
    i = i + 1
  end
  o = o + 1
end
make("stored(a)", "r = -a return r")
make("returned(a)", "return -a")
make("in_place(a)", "a = -a return a")
i = 0
while i < len(numbers) do
  load("a = " + numbers[i])()
  expected = pcall(stored, a)
  check("-" + numbers[i], expected, pcall(returned, a))
  check("-" + numbers[i], expected, pcall(in_place, a))
  check("-" + numbers[i], expected, pcall(load("return -a", "same")))
  check("-" + numbers[i], expected, pcall(load("return -(" + numbers[i] + ")", "same")))
  i = i + 1
end
puts(compared, different)
puts(stored(min), stored(true), stored(false), stored(9223372036854775807), type_of(stored(true)))
make("edges_of(a)", "return [a % -1, a * -1, a - 1, a + a, a / -1]")
puts(edges_of(min))
