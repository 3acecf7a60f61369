n = 1400
# Breadth-first search through a maze on a square grid: an array as queue, an array of distances.
def maze(size)
  walls = []
  seed = 3
  i = 0
  while i < size * size
    seed = seed * 16807 % 2147483647
    array_push(walls, seed % 4 == 0)
    i = i + 1
  end
  walls[0] = false
  return walls
end

def visit(cell, distance, walls, distances, queue)
  if !walls[cell]
    if distances[cell] < 0
      distances[cell] = distance
      array_push(queue, cell)
    end
  end
end

def run(size)
  walls = maze(size)
  distances = array_new(size * size, -1)
  distances[0] = 0
  queue = [0]
  head = 0
  sum = 0
  while head < len(queue)
    cell = queue[head]
    head = head + 1
    distance = distances[cell] + 1
    sum = (sum + distance) % 1000003
    x = cell % size
    if x > 0
      visit(cell - 1, distance, walls, distances, queue)
    end
    if x < size - 1
      visit(cell + 1, distance, walls, distances, queue)
    end
    if cell >= size
      visit(cell - size, distance, walls, distances, queue)
    end
    if cell < size * (size - 1)
      visit(cell + size, distance, walls, distances, queue)
    end
  end
  puts(len(queue))
  puts(sum)
end

run(n)
