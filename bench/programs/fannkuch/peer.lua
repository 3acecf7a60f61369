local n = 9
-- Pancake flipping over all permutations: short runs of element swaps.
local function fannkuch(size)
  local start, work, count = {}, {}, {}
  for i = 1, size do
    start[i] = i
    work[i] = 0
    count[i] = 0
  end
  local checksum = 0
  local most = 0
  local even = true
  local r = size
  while true do
    while r > 1 do
      count[r] = r
      r = r - 1
    end
    for i = 1, size do
      work[i] = start[i]
    end
    local flips = 0
    local first = work[1]
    while first > 1 do
      local i = 1
      local j = first
      while i < j do
        work[i], work[j] = work[j], work[i]
        i = i + 1
        j = j - 1
      end
      flips = flips + 1
      first = work[1]
    end
    if flips > most then
      most = flips
    end
    if even then
      checksum = checksum + flips
    else
      checksum = checksum - flips
    end
    even = not even
    local advancing = true
    while advancing do
      if r == size then
        return checksum, most
      end
      local held = start[1]
      for i = 1, r do
        start[i] = start[i + 1]
      end
      start[r + 1] = held
      count[r + 1] = count[r + 1] - 1
      if count[r + 1] > 0 then
        advancing = false
      else
        r = r + 1
      end
    end
  end
end

local checksum, most = fannkuch(n)
print(checksum)
print(most)
