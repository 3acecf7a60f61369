def ranges(a, b)
  if a > 1 and a < 5 then puts(1) end
  if a < 1 or a >= 5 then puts(2) end
  if a >= "a" and a <= "z" then puts(3) end
  if b < 0 and a > 1 and a < 5 then puts(4) end
  if a > 1 and b < 0 and a < 5 then puts(5) end
  if a > 1 and a < 2.5 and a != 2 then puts(6) end
  if not (a > 1 and a < 5) then puts(7) end
  while a > 1 and a < 5 do a = a + 1 end
  return 0
end
def kinds(a, b)
  if a > 1 and a < "z" then puts(1) end
  if a > "a" and a < 5 then puts(2) end
  if a == 1 and a < 5 then puts(3) end
  if a > 1 and a == "z" then puts(4) end
  if a > 1 and b < 5 then puts(5) end
  if a > b and a < 5 then puts(6) end
  if a > 1 and a < b then puts(7) end
  return 0
end
