local n = 50000
-- Breadth-first search over a graph held as an array of arrays of neighbours, from several starts.
-- Nodes are numbered from 1, as the arrays are.
local function make_graph(size)
  local graph = {}
  for i = 1, size do
    graph[i] = { i % size + 1 }
  end
  local seed = 11
  for _ = 1, size * 3 do
    seed = seed * 16807 % 2147483647
    local list = graph[seed % size + 1]
    seed = seed * 16807 % 2147483647
    list[#list + 1] = seed % size + 1
  end
  return graph
end

local function search(graph, start)
  local distances = {}
  for i = 1, #graph do
    distances[i] = -1
  end
  distances[start] = 0
  local queue = { start }
  local head = 1
  local sum = 0
  while head <= #queue do
    local node = queue[head]
    head = head + 1
    local distance = distances[node]
    sum = sum + distance
    local neighbours = graph[node]
    for i = 1, #neighbours do
      local next = neighbours[i]
      if distances[next] < 0 then
        distances[next] = distance + 1
        queue[#queue + 1] = next
      end
    end
  end
  return sum
end

local function run(size)
  local graph = make_graph(size)
  local total = 0
  for i = 1, 10 do
    total = total + search(graph, i)
  end
  return total
end

print(run(n))
