local n = 12
-- All placements of n queens: backtracking over arrays of flags.
local function flags(count)
  local a = {}
  for i = 1, count do
    a[i] = false
  end
  return a
end

local function place(row, size, columns, rising, falling)
  if row > size then
    return 1
  end
  local count = 0
  for col = 1, size do
    if not columns[col] then
      if not rising[row + col] then
        if not falling[row - col + size] then
          columns[col] = true
          rising[row + col] = true
          falling[row - col + size] = true
          count = count + place(row + 1, size, columns, rising, falling)
          columns[col] = false
          rising[row + col] = false
          falling[row - col + size] = false
        end
      end
    end
  end
  return count
end

print(place(1, n, flags(n), flags(2 * n), flags(2 * n)))
