local n = 280
-- The shortest paths between all pairs of nodes: a matrix as an array of rows, its elements reached by two indices.
local function make_matrix(size)
  local d = {}
  local seed = 53
  for i = 1, size do
    d[i] = {}
    for j = 1, size do
      seed = seed * 16807 % 2147483647
      if i == j then
        d[i][j] = 0
      else
        d[i][j] = seed % 1000 + 1
      end
    end
  end
  return d
end

local function shorten(d, size)
  for k = 1, size do
    for i = 1, size do
      local row = d[i]
      for j = 1, size do
        local via = d[i][k] + d[k][j]
        if via < d[i][j] then
          row[j] = via
        end
      end
    end
  end
end

local function run(size)
  local d = make_matrix(size)
  shorten(d, size)
  local sum = 0
  for i = 1, size do
    for j = 1, size do
      sum = (sum * 3 + d[i][j]) % 1000003
    end
  end
  return sum
end

print(run(n))
