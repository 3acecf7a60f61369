# Shortest routes between towns: Dijkstra's algorithm on a priority queue (a binary heap).

# The heap is an array of [distance, town]. The parent of element i is at (i - 1) / 2,
# its children are at 2 * i + 1 and 2 * i + 2; no parent is larger than its children.
def heap_swap(heap, i, j)
  item = heap[i]
  heap[i] = heap[j]
  heap[j] = item
end

def heap_push(heap, distance, town)
  array_push(heap, [distance, town])
  i = len(heap) - 1
  moving = i > 0
  while moving
    parent = math_floor((i - 1) / 2)
    moving = false
    if heap[i][0] < heap[parent][0]
      heap_swap(heap, i, parent)
      i = parent
      moving = i > 0
    end
  end
end

def heap_pop(heap)
  heap_swap(heap, 0, len(heap) - 1)
  smallest = array_pop(heap)
  i = 0
  moving = true
  while moving
    child = 2 * i + 1
    # Both sides of "and" are always evaluated, so a condition that guards another
    # one needs an if of its own.
    if child + 1 < len(heap)
      if heap[child + 1][0] < heap[child][0]
        child = child + 1
      end
    end
    moving = false
    if child < len(heap)
      if heap[child][0] < heap[i][0]
        heap_swap(heap, i, child)
        i = child
        moving = true
      end
    end
  end
  return smallest
end

# The roads: for each town a list of [other town, distance].
roads = map_new()

def add_road(from, to, distance)
  if not table_has_key(roads, from)
    table_set(roads, from, [])
  end
  array_push(roads[from], [to, distance])
end

def add_both_ways(a, b, distance)
  add_road(a, b, distance)
  add_road(b, a, distance)
end

# Returns a map with the distance of every town that can be reached, and one with the
# previous town on the shortest route to it.
def shortest_routes(start)
  distances = map_new()
  before = map_new()
  queue = []
  distances[start] = 0
  heap_push(queue, 0, start)
  while len(queue) > 0
    entry = heap_pop(queue)
    town = entry[1]
    # Skip the entry if a shorter route has been found since.
    if entry[0] == distances[town]
      list = roads[town]
      i = 0
      while i < len(list)
        to = list[i][0]
        distance = entry[0] + list[i][1]
        known = table_get(distances, to)
        shorter = known == nil
        if not shorter
          shorter = distance < known
        end
        if shorter
          distances[to] = distance
          before[to] = town
          heap_push(queue, distance, to)
        end
        i = i + 1
      end
    end
  end
  return [distances, before]
end

def route(before, to)
  towns = [to]
  while table_has_key(before, to)
    to = before[to]
    array_unshift(towns, to)
  end
  return array_join(towns, " - ")
end

add_both_ways("Aldby", "Birken", 7)
add_both_ways("Aldby", "Cray", 9)
add_both_ways("Aldby", "Fell", 14)
add_both_ways("Birken", "Cray", 10)
add_both_ways("Birken", "Dunmore", 15)
add_both_ways("Cray", "Dunmore", 11)
add_both_ways("Cray", "Fell", 2)
add_both_ways("Dunmore", "Eastry", 6)
add_both_ways("Eastry", "Fell", 9)
add_both_ways("Island North", "Island South", 3)

result = shortest_routes("Aldby")
distances = result[0]
before = result[1]
towns = keys(roads)
i = 0
while i < len(towns)
  if table_has_key(distances, towns[i])
    puts(towns[i] + ":", distances[towns[i]], "(" + route(before, towns[i]) + ")")
  else
    puts(towns[i] + ": no road leads there")
  end
  i = i + 1
end
