n = 50000
# Breadth-first search over a graph held as an array of arrays of neighbours, from several starts.
def make_graph(size)
  graph = []
  i = 0
  while i < size
    graph << [(i + 1) % size]
    i += 1
  end
  seed = 11
  i = 0
  while i < size * 3
    seed = seed * 16807 % 2147483647
    from = seed % size
    seed = seed * 16807 % 2147483647
    graph[from] << seed % size
    i += 1
  end
  graph
end

def search(graph, start)
  distances = Array.new(graph.length, -1)
  distances[start] = 0
  queue = [start]
  head = 0
  sum = 0
  while head < queue.length
    node = queue[head]
    head += 1
    distance = distances[node]
    sum += distance
    neighbours = graph[node]
    i = 0
    while i < neighbours.length
      following = neighbours[i]
      if distances[following] < 0
        distances[following] = distance + 1
        queue << following
      end
      i += 1
    end
  end
  sum
end

def run(size)
  graph = make_graph(size)
  total = 0
  i = 0
  while i < 10
    total += search(graph, i)
    i += 1
  end
  total
end

puts run(n)
