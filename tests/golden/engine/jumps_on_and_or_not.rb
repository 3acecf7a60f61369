g = 1
def logic(a, b, c)
  if a and b then puts(1) end
  if a or b then puts(2) end
  if not (a and b) then puts(3) end
  if not (a or b) then puts(4) end
  if not a and not b then puts(5) end
  if a < b and b < c then puts(6) end
  if a < b or b == c then puts(7) end
  if not (a < b or b == c) then puts(8) end
  if a and b and c then puts(9) end
  if a or b and c then puts(10) end
  if a and g and 1 then puts(11) end
  if not (a < b) then puts(12) end
  if not not (a == b) then puts(13) end
  return a and b or not c
end
def leap(y)
  if y % 4 == 0 and (y % 100 != 0 or y % 400 == 0)
    return true
  end
  return false
end
def none(y)
  while not (y % 2 == 0 or y % 3 == 0 and y % 5 == 0)
    y = y + 1
  end
  return y
end
def may_fail(y, z)
  if y % 4 == 0 and (z % 100 != 0 or z % 400 == 0)
    return 1
  end
  if y % 4 == 0 and (y % 0 != 0 or y % 400 == 0)
    return 2
  end
  return 3
end
