local n = 250
-- Ackermann's function: recursion some hundred calls deep with little work between the calls.
local function ackermann(m, k)
  if m == 0 then
    return k + 1
  end
  if k == 0 then
    return ackermann(m - 1, 1)
  end
  return ackermann(m - 1, ackermann(m, k - 1))
end

local function run(rounds)
  local total = 0
  for i = 0, rounds - 1 do
    total = total + ackermann(3, 4 + i % 3)
  end
  return total
end

print(run(n))
