local n = 500
-- Largest singular value of an infinite matrix: a small float function inside two nested loops.
local function element(i, j)
  return 1.0 / ((i + j) * (i + j + 1) / 2 + i + 1)
end

local function multiply(v, size)
  local out = {}
  for i = 0, size - 1 do
    local sum = 0.0
    for j = 0, size - 1 do
      sum = sum + element(i, j) * v[j + 1]
    end
    out[#out + 1] = sum
  end
  return out
end

local function multiply_transposed(v, size)
  local out = {}
  for i = 0, size - 1 do
    local sum = 0.0
    for j = 0, size - 1 do
      sum = sum + element(j, i) * v[j + 1]
    end
    out[#out + 1] = sum
  end
  return out
end

local function run(size)
  local u = {}
  for i = 1, size do
    u[i] = 1.0
  end
  local v = u
  for _ = 1, 10 do
    v = multiply_transposed(multiply(u, size), size)
    u = multiply_transposed(multiply(v, size), size)
  end
  local uv = 0.0
  local vv = 0.0
  for i = 1, size do
    uv = uv + u[i] * v[i]
    vv = vv + v[i] * v[i]
  end
  return math.floor(math.sqrt(uv / vv) * 1000000000)
end

print(run(n))
