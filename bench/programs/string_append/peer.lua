local n = 30000
-- Texts of about a kilobyte built by repeated append of short pieces.
local function build(pieces, count)
  local text = ""
  for i = 0, count - 1 do
    text = text .. pieces[i % 4 + 1]
  end
  return text
end

local function run(rounds)
  local pieces = { "alpha ", "be ", "gamma-delta ", "x" }
  local total = 0
  for i = 0, rounds - 1 do
    local text = build(pieces, 100 + i % 200)
    total = total + #text
    local at = i % 500 + 1
    if text:sub(at, at) == "a" then
      total = total + 1
    end
  end
  return total
end

print(run(n))
