local n = 300000
-- Arrays of some dozen elements, written as a literal or grown by pushing; the last hundred are kept.
local function row(first)
  return { first, first + 1, first + 2, first + 3, first + 4, first + 5, first + 6, first + 7, first + 8, first + 9 }
end

local function grown(size, first)
  local a = {}
  for i = 0, size - 1 do
    a[#a + 1] = first + i
  end
  return a
end

local function run(count)
  local kept = {}
  for i = 1, 100 do
    kept[i] = { 0 }
  end
  local total = 0
  for i = 0, count - 1 do
    local slot = i % 100 + 1
    local old = kept[slot]
    total = (total + old[1] + old[#old]) % 1000003
    kept[slot] = grown(i * 7 % 60 + 10, i)
    total = total + row(i)[i % 10 + 1]
  end
  return total
end

print(run(n))
