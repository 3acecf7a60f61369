local n = 150000
-- A map from the numbers 1 to n, filled in one random order and read in another.
local function shuffled(count, seed)
  local a = {}
  for i = 1, count do
    a[i] = i
  end
  for i = count, 2, -1 do
    seed = seed * 16807 % 2147483647
    local j = seed % i + 1
    a[i], a[j] = a[j], a[i]
  end
  return a
end

local function run(count)
  local first = shuffled(count, 31)
  local second = shuffled(count, 37)
  local m = {}
  for i = 1, count do
    m[first[i]] = i - 1
  end
  local sum = 0
  for _ = 1, 80 do
    for i = 1, count do
      sum = (sum * 3 + m[second[i]]) % 1000003
    end
  end
  return sum
end

print(run(n))
