local n = 6000000
-- Conditions made of several comparisons: points in regions, leap years, kinds of triangles.
local function region(x, y)
  if x >= 20 and x < 60 and y >= 30 and y < 80 then
    return 1
  end
  if x < 5 or x > 95 or y < 5 or y > 95 then
    return 2
  end
  if (x == y or x + y == 100) and not (x > 40 and x < 70) then
    return 3
  end
  return 4
end

local function triangle(a, b, c)
  if a + b <= c or b + c <= a or a + c <= b then
    return 0
  elseif a == b and b == c then
    return 3
  elseif a == b or b == c or a == c then
    return 2
  end
  return 1
end

local function run(count)
  local total = 0
  local leap = 0
  for i = 0, count - 1 do
    local x = i % 101
    local y = i % 97
    total = total + region(x, y) + triangle(x, y, i % 89)
    if i % 4 == 0 and (i % 100 ~= 0 or i % 400 == 0) then
      leap = leap + 1
    end
  end
  print(total)
  print(leap)
end

run(n)
