# Only nil and false are falsy.
def test(value)
  if value then return "yes" else return "no" end
end
puts(test(nil), test(false))
puts(test(true), test(0), test(0.0), test(-0.0), test(""), test([]), test(map_new()), test(puts), test(to_f("nan")), test("false"))
n = 0
while [] do n = n + 1 if n == 3 then return puts(n) end end
