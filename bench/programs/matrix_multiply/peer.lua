local n = 320
-- Product of two square matrices held as arrays of rows.
local function fill(size, seed)
  local m = {}
  for i = 1, size do
    local row = {}
    for j = 1, size do
      seed = seed * 16807 % 2147483647
      row[j] = seed % 100
    end
    m[i] = row
  end
  return m
end

local function multiply(a, b, size)
  local c = {}
  for i = 1, size do
    local ai = a[i]
    local ci = {}
    for j = 1, size do
      local sum = 0
      for k = 1, size do
        sum = sum + ai[k] * b[k][j]
      end
      ci[j] = sum
    end
    c[i] = ci
  end
  return c
end

local function run(size)
  local c = multiply(fill(size, 7), fill(size, 11), size)
  local sum = 0
  for i = 1, size do
    for j = 1, size do
      sum = (sum * 7 + c[i][j]) % 1000000007
    end
  end
  return sum
end

print(run(n))
