local n = 6000
-- A line of fields split, joined and rewritten by the built-in string functions.
local function run(rounds)
  local fields = {}
  for i = 0, 399 do
    fields[#fields + 1] = "field" .. i * 37 % 1000
  end
  local line = table.concat(fields, ",")
  local total = 0
  for i = 0, rounds - 1 do
    local parts = {}
    for field in line:gmatch("[^,]+") do
      parts[#parts + 1] = field
    end
    parts[i % 400 + 1] = "changed"
    local joined = table.concat(parts, ";")
    local replaced = joined:gsub("field1", "<one>")
    total = total + #parts + #joined + #replaced
  end
  return total
end

print(run(n))
