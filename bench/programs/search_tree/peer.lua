local n = 200000
-- A binary search tree of nodes {key, left, right}: random keys put in, looked up and summed in order.
local function insert(root, key)
  local node = root
  while true do
    local side = 2
    if key == node[1] then
      return false
    elseif key > node[1] then
      side = 3
    end
    local child = node[side]
    if child == nil then
      node[side] = { key, nil, nil }
      return true
    end
    node = child
  end
end

local function contains(node, key)
  while node ~= nil do
    if key == node[1] then
      return true
    elseif key < node[1] then
      node = node[2]
    else
      node = node[3]
    end
  end
  return false
end

local function checksum(node, sum)
  if node == nil then
    return sum
  end
  sum = checksum(node[2], sum)
  return checksum(node[3], (sum * 3 + node[1]) % 1000003)
end

local function run(count)
  local limit = count * 4
  local root = { count * 2, nil, nil }
  local size = 1
  local seed = 47
  for _ = 1, count do
    seed = seed * 16807 % 2147483647
    if insert(root, seed % limit) then
      size = size + 1
    end
  end
  local found = 0
  for i = 0, limit - 1, 3 do
    if contains(root, i) then
      found = found + 1
    end
  end
  print(size)
  print(found)
  print(checksum(root, 0))
end

run(n)
