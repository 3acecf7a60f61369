n = 50000
# Breadth-first search over a graph held as an array of arrays of neighbours, from several starts.
def make_graph(size)
  graph = []
  i = 0
  while i < size
    array_push(graph, [(i + 1) % size])
    i = i + 1
  end
  seed = 11
  i = 0
  while i < size * 3
    seed = seed * 16807 % 2147483647
    from = seed % size
    seed = seed * 16807 % 2147483647
    array_push(graph[from], seed % size)
    i = i + 1
  end
  return graph
end

def search(graph, start)
  distances = array_new(len(graph), -1)
  distances[start] = 0
  queue = [start]
  head = 0
  sum = 0
  while head < len(queue)
    node = queue[head]
    head = head + 1
    distance = distances[node]
    sum = sum + distance
    neighbours = graph[node]
    i = 0
    while i < len(neighbours)
      next = neighbours[i]
      if distances[next] < 0
        distances[next] = distance + 1
        array_push(queue, next)
      end
      i = i + 1
    end
  end
  return sum
end

def run(size)
  graph = make_graph(size)
  total = 0
  i = 0
  while i < 10
    total = total + search(graph, i)
    i = i + 1
  end
  return total
end

puts(run(n))
