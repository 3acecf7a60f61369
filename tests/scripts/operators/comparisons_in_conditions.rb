# A comparison that decides a branch gives what it gives as a value, also for NaN and beyond 2 to the power 53.
nan = to_f("nan")
a = 9007199254740993
b = 9007199254740992
def show(x, y)
  r = ""
  if x < y then r = r + "<" end
  if x <= y then r = r + "<=" end
  if x > y then r = r + ">" end
  if x >= y then r = r + ">=" end
  if x == y then r = r + "==" end
  if x != y then r = r + "!=" end
  if not (x < y) then r = r + " !<" end
  if not (x <= y) then r = r + " !<=" end
  if !(x > y) then r = r + " !>" end
  if !(x >= y) then r = r + " !>=" end
  if not (x == y) then r = r + " !==" end
  if not (x != y) then r = r + " !!=" end
  return r
end
puts(show(1, 2))
puts(show(2, 1.5))
puts(show(nan, 1))
puts(show(nan, nan))
puts(show(a, b))
puts(show(b, a))
puts(show("a", "b"))
puts(show(true, 1))
i = 0
while nan < i or i < 3 do i = i + 1 end
while not (nan < i) and i < 5 do i = i + 1 end
puts(i)
if a > b then puts("greater") else puts("not greater") end
if a == b then puts("equal") else puts("not equal") end
if 9007199254740993 > 9007199254740992 then puts("greater") else puts("not greater") end
