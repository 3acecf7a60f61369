local n = 24000000
-- The length of an array and of a string asked for again and again.
local function run(count)
  local list = { 1, 2, 3, 4, 5 }
  local text = "a text of thirty characters..."
  local total = 0
  for _ = 1, count do
    total = total + #list + #text
    if total > 100000 then
      total = total - 100000
    end
  end
  return total
end

print(run(n))
