local n = 1000
-- Escape times over a grid of points: float arithmetic on locals in a tight loop.
local function escape(cr, ci, limit)
  local zr = 0.0
  local zi = 0.0
  for k = 0, limit - 1 do
    local zr2 = zr * zr
    local zi2 = zi * zi
    if zr2 + zi2 > 4.0 then
      return k
    end
    zi = 2.0 * zr * zi + ci
    zr = zr2 - zi2 + cr
  end
  return limit
end

local function run(size)
  local total = 0
  for y = 0, size - 1 do
    local ci = 2.0 * y / size - 1.0
    for x = 0, size - 1 do
      total = total + escape(3.0 * x / size - 2.0, ci, 50)
    end
  end
  return total
end

print(run(n))
