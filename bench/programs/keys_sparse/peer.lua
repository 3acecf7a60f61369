local n = 100000
-- A map with random keys below 2 to the power 31: stores, look-ups that hit and look-ups that miss.
local function run(count)
  local m = {}
  local seed = 41
  for i = 0, count - 1 do
    seed = seed * 16807 % 2147483647
    m[seed] = i
  end
  local found = 0
  local sum = 0
  for _ = 1, 20 do
    seed = 41
    for _ = 1, count * 2 do
      seed = seed * 16807 % 2147483647
      local value = m[seed]
      if value then
        found = found + 1
        sum = (sum + value) % 1000003
      end
    end
  end
  print(found)
  print(sum)
end

run(n)
