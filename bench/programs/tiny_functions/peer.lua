local n = 6000000
-- Functions whose body is one expression, called in a loop.
local function square(x)
  return x * x
end

local function twice_plus(x, y)
  return x * 2 + y
end

local function wrap(x)
  return x % 10007
end

local function larger(x, y)
  return x > y
end

local function run(count)
  local total = 0
  for i = 0, count - 1 do
    total = wrap(twice_plus(total, square(i % 100)))
    if larger(total, 5000) then
      total = total + 1
    end
  end
  return total
end

print(run(n))
