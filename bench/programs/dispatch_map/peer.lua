local n = 11000000
-- Functions looked up by name in a map and called.
local function add(x, i)
  return x + i
end

local function scale(x, i)
  return x * 3 + i
end

local function mix(x, i)
  local y = x - i
  if y < 0 then
    y = -y
  end
  return y
end

local function run(count)
  local actions = {}
  actions["add"] = add
  actions["scale"] = scale
  actions["mix"] = mix
  local order = { "add", "scale", "mix", "add" }
  local total = 0
  for i = 0, count - 1 do
    total = actions[order[i % 4 + 1]](total, i) % 100003
  end
  return total
end

print(run(n))
