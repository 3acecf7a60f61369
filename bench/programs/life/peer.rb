n = 1100
# The game of life on a torus: a grid of rows, eight neighbours a cell.
def start(size)
  grid = []
  seed = 5
  y = 0
  while y < size
    row = []
    x = 0
    while x < size
      seed = seed * 16807 % 2147483647
      if seed % 3 == 0
        row << 1
      else
        row << 0
      end
      x += 1
    end
    grid << row
    y += 1
  end
  grid
end

def next_generation(grid, size)
  fresh = []
  y = 0
  while y < size
    above = grid[(y + size - 1) % size]
    here = grid[y]
    below = grid[(y + 1) % size]
    row = []
    x = 0
    while x < size
      l = (x + size - 1) % size
      r = (x + 1) % size
      around = above[l] + above[x] + above[r] + here[l] + here[r] + below[l] + below[x] + below[r]
      alive = 0
      if around == 3
        alive = 1
      elsif around == 2
        alive = here[x]
      end
      row << alive
      x += 1
    end
    fresh << row
    y += 1
  end
  fresh
end

def run(generations)
  size = 64
  grid = start(size)
  i = 0
  while i < generations
    grid = next_generation(grid, size)
    i += 1
  end
  sum = 0
  y = 0
  while y < size
    x = 0
    while x < size
      sum = (sum * 3 + grid[y][x]) % 1000003
      x += 1
    end
    y += 1
  end
  sum
end

puts run(n)
