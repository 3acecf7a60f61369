local n = 300000
-- Large arrays made at once and grown by pushing, each dropped when the next one is there.
local function filled(size, seed)
  local a = {}
  for i = 1, size do
    a[i] = 0
  end
  for i = 1, size do
    a[i] = i - 1 + seed
  end
  return a
end

local function grown(size, seed)
  local a = {}
  for i = 0, size - 1 do
    a[#a + 1] = i * seed
  end
  return a
end

local function run(size)
  local total = 0
  for round = 1, 40 do
    local a = filled(size + round, round)
    local b = grown(size - round, round)
    total = (total + a[size] + b[size - 40] + #a + #b) % 1000003
  end
  return total
end

print(run(n))
