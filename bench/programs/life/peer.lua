local n = 1100
-- The game of life on a torus: a grid of rows, eight neighbours a cell.
local function start(size)
  local grid = {}
  local seed = 5
  for y = 1, size do
    local row = {}
    for x = 1, size do
      seed = seed * 16807 % 2147483647
      if seed % 3 == 0 then
        row[x] = 1
      else
        row[x] = 0
      end
    end
    grid[y] = row
  end
  return grid
end

local function next_generation(grid, size)
  local fresh = {}
  for y = 1, size do
    local above = grid[(y + size - 2) % size + 1]
    local here = grid[y]
    local below = grid[y % size + 1]
    local row = {}
    for x = 1, size do
      local l = (x + size - 2) % size + 1
      local r = x % size + 1
      local around = above[l] + above[x] + above[r] + here[l] + here[r] + below[l] + below[x] + below[r]
      local alive = 0
      if around == 3 then
        alive = 1
      elseif around == 2 then
        alive = here[x]
      end
      row[x] = alive
    end
    fresh[y] = row
  end
  return fresh
end

local function run(generations)
  local size = 64
  local grid = start(size)
  for _ = 1, generations do
    grid = next_generation(grid, size)
  end
  local sum = 0
  for y = 1, size do
    for x = 1, size do
      sum = (sum * 3 + grid[y][x]) % 1000003
    end
  end
  return sum
end

print(run(n))
