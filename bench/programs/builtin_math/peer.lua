local n = 6000000
-- Calls of floor, square root, minimum and maximum in a loop.
local sqrt, floor, min, max = math.sqrt, math.floor, math.min, math.max

local function run(count)
  local total = 0
  for i = 0, count - 1 do
    local r = sqrt(i)
    local k = floor(r * 10)
    total = (total + min(k, 5000) + max(i % 10, 5)) % 1000003
  end
  return total
end

print(run(n))
