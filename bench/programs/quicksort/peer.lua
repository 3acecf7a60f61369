local n = 900000
-- Quicksort written in the language: element loads, comparisons and swaps, moderate recursion.
local function sort(a, low, high)
  local i = low
  local j = high
  local pivot = a[math.floor((low + high) / 2)]
  while i <= j do
    while a[i] < pivot do
      i = i + 1
    end
    while pivot < a[j] do
      j = j - 1
    end
    if i <= j then
      a[i], a[j] = a[j], a[i]
      i = i + 1
      j = j - 1
    end
  end
  if low < j then
    sort(a, low, j)
  end
  if i < high then
    sort(a, i, high)
  end
end

local function run(count)
  local a = {}
  local seed = 42
  for i = 1, count do
    seed = seed * 16807 % 2147483647
    a[i] = seed
  end
  sort(a, 1, count)
  local sum = 0
  for i = 1, count do
    sum = (sum * 3 + a[i]) % 1000000007
  end
  return sum
end

print(run(n))
