local n = 8000
-- Bubble sort: neighbours compared and swapped.
local function sort(a)
  for last = #a - 1, 1, -1 do
    for i = 1, last do
      if a[i] > a[i + 1] then
        a[i], a[i + 1] = a[i + 1], a[i]
      end
    end
  end
end

local function run(count)
  local a = {}
  local seed = 23
  for i = 1, count do
    seed = seed * 16807 % 2147483647
    a[i] = seed
  end
  sort(a)
  local sum = 0
  for i = 1, count do
    sum = (sum * 3 + a[i]) % 1000000007
  end
  return sum
end

print(run(n))
