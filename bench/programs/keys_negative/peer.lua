local n = 150
-- A map of the cells around an origin, its keys negative and positive: four neighbours of every cell summed.
local function fill(m, size)
  for x = -size, size do
    for y = -size, size do
      m[x * 1000 + y] = (x * x + y * y) % 97
    end
  end
end

local function around(m, size)
  local sum = 0
  for x = 1 - size, size - 1 do
    for y = 1 - size, size - 1 do
      local at = x * 1000 + y
      sum = (sum * 3 + m[at - 1000] + m[at - 1] + m[at + 1] + m[at + 1000]) % 1000003
    end
  end
  return sum
end

local function run(size)
  local m = {}
  fill(m, size)
  local total = 0
  for round = 0, 49 do
    total = total + around(m, size - round % 5)
  end
  return total
end

print(run(n))
