local n = 500000
-- A binary heap of pairs {priority, item} in an array: the first taken out, a later one put in.
local floor = math.floor

local function sift_up(heap, at)
  local entry = heap[at]
  while at > 1 do
    local parent = floor(at / 2)
    local above = heap[parent]
    if above[1] <= entry[1] then
      heap[at] = entry
      return
    end
    heap[at] = above
    at = parent
  end
  heap[1] = entry
end

local function sift_down(heap, entry)
  local size = #heap
  local at = 1
  local child = 2
  while child <= size do
    if child < size and heap[child + 1][1] < heap[child][1] then
      child = child + 1
    end
    local below = heap[child]
    if below[1] >= entry[1] then
      heap[at] = entry
      return
    end
    heap[at] = below
    at = child
    child = 2 * at
  end
  heap[at] = entry
end

local function push(heap, priority, item)
  heap[#heap + 1] = { priority, item }
  sift_up(heap, #heap)
end

local function pop(heap)
  local first = heap[1]
  local last = table.remove(heap)
  if #heap > 0 then
    sift_down(heap, last)
  end
  return first
end

local function run(events)
  local heap = {}
  local seed = 43
  for i = 0, 1999 do
    seed = seed * 16807 % 2147483647
    push(heap, seed % 100000, i)
  end
  local sum = 0
  for i = 2000, events - 1 do
    local event = pop(heap)
    sum = (sum * 31 + event[1] + event[2]) % 1000003
    seed = seed * 16807 % 2147483647
    push(heap, event[1] + seed % 100000, i)
  end
  while #heap > 0 do
    sum = (sum * 31 + pop(heap)[2]) % 1000003
  end
  return sum
end

print(run(n))
