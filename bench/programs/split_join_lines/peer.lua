local n = 300000
-- Short lines of four fields made by joining, split again, changed and joined anew.
local function run(count)
  local total = 0
  for i = 0, count - 1 do
    local line = table.concat({ i, "name" .. i % 100, "city" .. i % 7, i * 37 % 1000 }, ",")
    local fields = {}
    for field in line:gmatch("[^,]+") do
      fields[#fields + 1] = field
    end
    local amount = tonumber(fields[4])
    if amount > 500 then
      fields[2] = fields[2]:upper()
      amount = amount - 500
    end
    if fields[3] == "city3" then
      fields[3] = "capital"
    end
    total = (total + amount + #table.concat(fields, "; ")) % 1000003
  end
  return total
end

print(run(n))
