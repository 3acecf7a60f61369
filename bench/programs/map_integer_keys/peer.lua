local n = 480000
-- A map with scattered integer keys: stores, look-ups that hit and look-ups that miss.
local function run(count)
  local m = {}
  for i = 0, count - 1 do
    m[i * 7919 % 1000003] = i
  end
  local found = 0
  local sum = 0
  for _ = 1, 8 do
    for i = 0, count * 2 - 1 do
      local v = m[i * 7919 % 1000003]
      if v ~= nil then
        found = found + 1
        sum = (sum + v) % 1000003
      end
    end
  end
  local size = 0
  for _ in pairs(m) do
    size = size + 1
  end
  print(size)
  print(found)
  print(sum)
end

run(n)
