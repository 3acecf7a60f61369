local n = 10
-- Heap's algorithm: every permutation by one swap from the last, the array passed to small functions.
local function swap(a, i, j)
  a[i], a[j] = a[j], a[i]
end

local function visit(a, totals)
  totals[1] = totals[1] + 1
  totals[2] = (totals[2] * 31 + a[1] * 7 + a[2]) % 1000003
end

local function permute(size, a, totals)
  if size == 1 then
    visit(a, totals)
    return
  end
  for i = 1, size - 1 do
    permute(size - 1, a, totals)
    if size % 2 == 0 then
      swap(a, i, size)
    else
      swap(a, 1, size)
    end
  end
  permute(size - 1, a, totals)
end

local a = {}
for i = 1, n do
  a[i] = i - 1
end
local totals = { 0, 0 }
permute(n, a, totals)
print(totals[1])
print(totals[2])
