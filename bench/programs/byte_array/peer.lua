local n = 10000
-- A text turned into an array of byte values, then hashed.
local function hash(text)
  local bytes = { string.byte(text, 1, -1) }
  local h = 7
  for i = 1, #bytes do
    h = (h * 31 + bytes[i]) % 16777213
  end
  return h
end

local function run(rounds)
  local text = string.rep("pack my box with five dozen liquor jugs; ", 90)
  local total = 0
  for i = 0, rounds - 1 do
    total = (total + hash(text) + i) % 1000003
  end
  return total
end

print(run(n))
