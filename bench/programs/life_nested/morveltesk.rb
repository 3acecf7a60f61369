n = 400
# The game of life on a board with a margin of dead cells: cells reached by two indices, `and` and `or`.
def make_board(size)
  board = []
  y = 0
  while y < size + 2
    array_push(board, array_new(size + 2, 0))
    y = y + 1
  end
  return board
end

def scatter(board, size)
  seed = 5
  y = 1
  while y <= size
    row = board[y]
    x = 1
    while x <= size
      seed = seed * 16807 % 2147483647
      if seed % 3 == 0
        row[x] = 1
      end
      x = x + 1
    end
    y = y + 1
  end
end

def neighbours(board, x, y)
  count = 0
  dy = -1
  while dy <= 1
    dx = -1
    while dx <= 1
      if (dx != 0 or dy != 0) and board[y + dy][x + dx] == 1
        count = count + 1
      end
      dx = dx + 1
    end
    dy = dy + 1
  end
  return count
end

def next_generation(board, size)
  fresh = make_board(size)
  y = 1
  while y <= size
    row = fresh[y]
    x = 1
    while x <= size
      count = neighbours(board, x, y)
      if count == 3 or (count == 2 and board[y][x] == 1)
        row[x] = 1
      end
      x = x + 1
    end
    y = y + 1
  end
  return fresh
end

def run(generations)
  size = 64
  board = make_board(size)
  scatter(board, size)
  i = 0
  while i < generations
    board = next_generation(board, size)
    i = i + 1
  end
  sum = 0
  y = 1
  while y <= size
    x = 1
    while x <= size
      sum = (sum * 3 + board[y][x]) % 1000003
      x = x + 1
    end
    y = y + 1
  end
  return sum
end

puts(run(n))
