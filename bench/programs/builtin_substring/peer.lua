local n = 9000000
-- Short substrings cut from a text and compared.
local sub = string.sub

local function run(count)
  local text = "the rain in spain stays mainly in the plain"
  local size = #text
  local hits = 0
  local total = 0
  for i = 0, count - 1 do
    local at = i % size + 1
    local part = sub(text, at, at + 2)
    if part == "ain" then
      hits = hits + 1
    end
    total = total + #part
  end
  print(hits)
  print(total)
end

run(n)
