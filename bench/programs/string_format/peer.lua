local n = 1000000
-- Lines made by the format function from integers, strings and floats.
local format = string.format

local function run(count)
  local names = { "anna", "bert", "carol", "dan" }
  local total = 0
  local last = ""
  for i = 0, count - 1 do
    last = format("%s has %d of %d items at %g", names[i % 4 + 1], i % 1000, count, i % 8 * 0.5)
    total = total + #last
  end
  print(total)
  print(last)
end

run(n)
