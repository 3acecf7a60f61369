local n = 7000000
-- Functions that refuse bad arguments with an error before they return one expression.
local function checked_triple(x)
  if x < 0 then
    error("negative value")
  end
  return x * 3 + 1
end

local function checked_rest(x, limit)
  if limit == 0 then
    error("no limit")
  end
  return x % limit
end

local function checked_step(x)
  if x > 1000000 then
    error("value too large")
  end
  return x + 7
end

local function run(count)
  local total = 0
  for _ = 1, count do
    total = checked_rest(checked_triple(total), 10007)
    total = checked_step(total)
  end
  return total
end

print(run(n))
