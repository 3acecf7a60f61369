local n = 150000
-- A map from the numbers 1 to n in their order: filled, updated and read.
local function run(count)
  local m = {}
  for i = 1, count do
    m[i] = i * i % 1009
  end
  for round = 0, 199 do
    for i = 1, count do
      m[i] = m[i] + round
    end
  end
  local sum = 0
  for i = 1, count do
    sum = (sum * 3 + m[i]) % 1000003
  end
  return sum
end

print(run(n))
