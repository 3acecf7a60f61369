local n = 400000
-- An array shuffled by random swaps, then put in order by heap sort.
local function shuffle(a)
  local seed = 29
  for i = #a, 2, -1 do
    seed = seed * 16807 % 2147483647
    local j = seed % i + 1
    a[i], a[j] = a[j], a[i]
  end
end

local function sift_down(a, root, size)
  local child = 2 * root
  while child <= size do
    if child < size and a[child] < a[child + 1] then
      child = child + 1
    end
    if a[root] >= a[child] then
      return
    end
    a[root], a[child] = a[child], a[root]
    root = child
    child = 2 * root
  end
end

local function sort(a)
  local size = #a
  for root = math.floor(size / 2), 1, -1 do
    sift_down(a, root, size)
  end
  for last = size, 2, -1 do
    a[1], a[last] = a[last], a[1]
    sift_down(a, 1, last - 1)
  end
end

local function checksum(a)
  local sum = 0
  for i = 1, #a do
    sum = (sum * 31 + a[i]) % 1000003
  end
  return sum
end

local a = {}
for i = 1, n do
  a[i] = i - 1
end
shuffle(a)
print(checksum(a))
sort(a)
print(checksum(a))
