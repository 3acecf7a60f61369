def registers(a, b)
  if a == b then puts(1) end
  if a != b then puts(2) end
  if a < b then puts(3) end
  if a <= b then puts(4) end
  if a > b then puts(5) end
  if a >= b then puts(6) end
  return 0
end
def constants(a)
  if a == 1 then puts(1) end
  if a != 1 then puts(2) end
  if a < 1 then puts(3) end
  if a <= 1 then puts(4) end
  if a > 1 then puts(5) end
  if a >= 1 then puts(6) end
  if 1 < a then puts(7) end
  if 1 < 2 then puts(8) end
  return 0
end
g = 1
h = 2
def globals(a)
  if a == g then puts(1) end
  if g == a then puts(2) end
  if g == h then puts(3) end
  if g < 5 then puts(4) end
  if 5 <= g then puts(5) end
  if g > h then puts(6) end
  return 0
end
def computed(a, b)
  if a + 1 < b * 2 then puts(1) end
  if a + 1 < b then puts(2) end
  if a >= b + 1 then puts(3) end
  return 0
end
