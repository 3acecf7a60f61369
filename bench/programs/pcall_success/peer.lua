local n = 8000000
-- Protected calls that succeed.
local function work(x, i)
  local y = x * 3 + i
  if y > 1000000 then
    y = y % 1000003
  end
  return y
end

local function run(count)
  local total = 1
  for i = 0, count - 1 do
    local ok, value = pcall(work, total, i)
    if ok then
      total = value
    else
      total = 0
    end
  end
  return total
end

print(run(n))
