local n = 1400
-- Breadth-first search through a maze on a square grid: an array as queue, an array of distances.
-- Cells are numbered from 0 as in the other languages; the arrays start at 1.
local function maze(size)
  local walls = {}
  local seed = 3
  for i = 1, size * size do
    seed = seed * 16807 % 2147483647
    walls[i] = seed % 4 == 0
  end
  walls[1] = false
  return walls
end

local function visit(cell, distance, walls, distances, queue)
  if not walls[cell + 1] then
    if distances[cell + 1] < 0 then
      distances[cell + 1] = distance
      queue[#queue + 1] = cell
    end
  end
end

local function run(size)
  local walls = maze(size)
  local distances = {}
  for i = 1, size * size do
    distances[i] = -1
  end
  distances[1] = 0
  local queue = { 0 }
  local head = 1
  local sum = 0
  while head <= #queue do
    local cell = queue[head]
    head = head + 1
    local distance = distances[cell + 1] + 1
    sum = (sum + distance) % 1000003
    local x = cell % size
    if x > 0 then
      visit(cell - 1, distance, walls, distances, queue)
    end
    if x < size - 1 then
      visit(cell + 1, distance, walls, distances, queue)
    end
    if cell >= size then
      visit(cell - size, distance, walls, distances, queue)
    end
    if cell < size * (size - 1) then
      visit(cell + size, distance, walls, distances, queue)
    end
  end
  print(#queue)
  print(sum)
end

run(n)
