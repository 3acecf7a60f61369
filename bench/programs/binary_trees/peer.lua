local n = 16
-- Complete binary trees built, counted and dropped: many small arrays.
local function build(depth)
  if depth == 0 then
    return { nil, nil }
  end
  return { build(depth - 1), build(depth - 1) }
end

local function count(node)
  local left = node[1]
  if left == nil then
    return 1
  end
  return 1 + count(left) + count(node[2])
end

local function run(depth)
  local kept = build(depth)
  local total = 0
  for round = 0, 19 do
    total = total + count(build(depth - round % 4))
  end
  return total + count(kept)
end

print(run(n))
