local n = 120000
-- Words looked for, tested and changed in case and ends by the built-in string functions.
local function run(rounds)
  local text = string.rep("all work and no play makes a dull day ", 40) .. "NEEDLE at the end"
  local needles = { "dull", "NEEDLE", "missing", "end" }
  local ending = "needle at the end"
  local total = 0
  for i = 0, rounds - 1 do
    local needle = needles[i % 4 + 1]
    local place = text:find(needle, 1, true)
    if place then
      total = total + place
    end
    if text:find("day NEEDLE", 1, true) then
      total = total + 1
    end
    local low = text:lower()
    if low:sub(-#ending) == ending then
      total = total + 2
    end
    total = total + #("   " .. needle .. " "):match("^%s*(.-)%s*$")
    total = total + #needle:upper() + #low:reverse()
  end
  return total
end

print(run(n))
