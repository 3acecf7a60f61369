local n = 9
-- Takeuchi's function: calls whose arguments are calls.
local function tak(x, y, z)
  if y >= x then
    return z
  end
  return tak(tak(x - 1, y, z), tak(y - 1, z, x), tak(z - 1, x, y))
end

local total = 0
for round = 1, 4 do
  total = total + tak(3 * n, 2 * n, n + round % 2)
end
print(total)
