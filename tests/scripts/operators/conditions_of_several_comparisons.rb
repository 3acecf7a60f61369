# Each condition in an if, a while and as a value, against the same put together from the values of its parts.
def both(l, r)
  return l and r
end
def either(l, r)
  return l or r
end
def inverse(v)
  return not v
end

def conditions(x, y)
  seen = []
  if x < 2 and y < 2 then array_push(seen, 0) end
  if x < 2 or y < 2 then array_push(seen, 1) end
  if x >= 1 and x < 3 then array_push(seen, 2) end
  if x < 1 or x >= 3 then array_push(seen, 3) end
  if x == 1 or x == 3 or y != 2 then array_push(seen, 4) end
  if x != 1 and x != 3 and y == 2 then array_push(seen, 5) end
  if (x >= 1 and x <= 2) or x == 4 then array_push(seen, 6) end
  if (x < 1 or x > 2) and x != 4 then array_push(seen, 7) end
  if ((x >= 1 and x <= 2) or x == 4) and x != 2 then array_push(seen, 8) end
  if not (x >= 1 and x <= 2) then array_push(seen, 9) end
  if not (x < 1 or x == 4) and not (y == 1) then array_push(seen, 10) end
  if not (x < 1) and x != 3 then array_push(seen, 11) end
  if not not (x < y or y < 2 and x == 0) then array_push(seen, 12) end
  if x <= y and y <= 3 and x != y then array_push(seen, 13) end
  if x + 1 == y or x == y + 1 then array_push(seen, 14) end
  if x == 2 and (y == 1 or y == 3) then array_push(seen, 15) end
  if (x == 2 or y == 2) and (x == 1 or y == 1) then array_push(seen, 16) end
  low = x < 2
  if low and y == 1 then array_push(seen, 17) end
  if y == 1 and low then array_push(seen, 18) end
  if not low and y == 1 then array_push(seen, 19) end
  if not low or y == 1 or x == 0 then array_push(seen, 20) end
  value = x > 0 and y > 0
  if value then array_push(seen, 21) end
  value = x > 0 or y > 0 and x == y
  if value then array_push(seen, 22) end
  turns = x
  while turns > 0 and turns < 4 and y != 0
    turns = turns - 1
    array_push(seen, 23)
  end
  turns = x
  while turns == 3 or turns == 2 or (turns == 1 and y == 3)
    turns = turns - 1
    array_push(seen, 24)
  end
  turns = 0
  while not (turns >= x or turns == 3)
    turns = turns + 1
    array_push(seen, 25)
  end
  return seen
end

def expected(x, y)
  a = []
  array_push(a, both(x < 2, y < 2))
  array_push(a, either(x < 2, y < 2))
  array_push(a, both(x >= 1, x < 3))
  array_push(a, either(x < 1, x >= 3))
  array_push(a, either(either(x == 1, x == 3), y != 2))
  array_push(a, both(both(x != 1, x != 3), y == 2))
  array_push(a, either(both(x >= 1, x <= 2), x == 4))
  array_push(a, both(either(x < 1, x > 2), x != 4))
  array_push(a, both(either(both(x >= 1, x <= 2), x == 4), x != 2))
  array_push(a, inverse(both(x >= 1, x <= 2)))
  array_push(a, both(inverse(either(x < 1, x == 4)), inverse(y == 1)))
  array_push(a, both(inverse(x < 1), x != 3))
  array_push(a, either(x < y, both(y < 2, x == 0)))
  array_push(a, both(both(x <= y, y <= 3), x != y))
  array_push(a, either(x + 1 == y, x == y + 1))
  array_push(a, both(x == 2, either(y == 1, y == 3)))
  array_push(a, both(either(x == 2, y == 2), either(x == 1, y == 1)))
  array_push(a, both(x < 2, y == 1))
  array_push(a, both(y == 1, x < 2))
  array_push(a, both(inverse(x < 2), y == 1))
  array_push(a, either(either(inverse(x < 2), y == 1), x == 0))
  array_push(a, both(x > 0, y > 0))
  array_push(a, either(x > 0, both(y > 0, x == y)))
  seen = []
  i = 0
  while i < len(a)
    if a[i] then array_push(seen, i) end
    i = i + 1
  end
  turns = x
  while both(both(turns > 0, turns < 4), y != 0)
    turns = turns - 1
    array_push(seen, 23)
  end
  turns = x
  while either(either(turns == 3, turns == 2), both(turns == 1, y == 3))
    turns = turns - 1
    array_push(seen, 24)
  end
  turns = 0
  while inverse(either(turns >= x, turns == 3))
    turns = turns + 1
    array_push(seen, 25)
  end
  return seen
end

puts(conditions(2, 3))
nan = math_log(-1)
values = [-1, 0, 1, 2, 3, 4, 0.5, 2.0, true, false, nan]
different = 0
for_x = 0
while for_x < len(values)
  for_y = 0
  while for_y < len(values)
    x = values[for_x]
    y = values[for_y]
    if conditions(x, y) != expected(x, y)
      puts("differ for", x, y, conditions(x, y), expected(x, y))
      different = different + 1
    end
    for_y = for_y + 1
  end
  for_x = for_x + 1
end
puts(different)

# The same with variables of the top level.
i = 0
count = 0
while i < 10 and count != 7
  if i == 2 or (i > 4 and i < 7) or not (i != 9)
    count = count + 1
  end
  i = i + 1
end
puts(i, count)
