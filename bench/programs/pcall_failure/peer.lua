local n = 1400000
-- Protected calls that fail: an error raised two calls down, its message used by the caller.
local function check(x)
  local limit = 10
  if x >= limit then
    error("value out of range", 0)
  end
  return x
end

local function work(x)
  local y = check(x + 10)
  return y * 2
end

local function guarded(x)
  if x >= 0 then
    error("refused", 0)
  end
  return x
end

local function run(count)
  local total = 0
  for i = 0, count - 1 do
    local ok, message = pcall(work, i)
    if not ok then
      total = total + #message
    end
    ok, message = pcall(guarded, i)
    if not ok then
      total = total + #message
    end
  end
  return total
end

print(run(n))
