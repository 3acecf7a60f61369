local n = 2500
-- Edit distance of two texts by dynamic programming over two rows.
local sub = string.sub

local function letters(size, seed)
  local alphabet = "abcd"
  local text = ""
  for _ = 1, size do
    seed = seed * 16807 % 2147483647
    local at = seed % 4 + 1
    text = text .. sub(alphabet, at, at)
  end
  return text
end

local function distance(a, b)
  local width = #b
  local previous = {}
  for j = 1, width + 1 do
    previous[j] = j - 1
  end
  for i = 1, #a do
    local c = sub(a, i, i)
    local current = { i }
    local left = i
    for j = 1, width do
      local best = previous[j]
      if c ~= sub(b, j, j) then
        best = best + 1
      end
      if left + 1 < best then
        best = left + 1
      end
      if previous[j + 1] + 1 < best then
        best = previous[j + 1] + 1
      end
      current[j + 1] = best
      left = best
    end
    previous = current
  end
  return previous[width + 1]
end

print(distance(letters(n, 1), letters(n, 2)))
