local n = 100000
-- Maps filled from the largest number down to 1, and read in that order.
local function run(count)
  local sum = 0
  for round = 0, 49 do
    local m = {}
    for i = count, 1, -1 do
      m[i] = i + round
    end
    for i = count, 1, -1 do
      sum = (sum * 3 + m[i]) % 1000003
    end
  end
  return sum
end

print(run(n))
