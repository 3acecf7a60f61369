# Conway's game of life on a board that wraps around: a glider crosses a corner.

width = 16
height = 8

# A board is an array of rows, and a row is an array of booleans.
def empty_board
  board = []
  y = 0
  while y < height
    # Make a new row each time: array_new with an array as its fill value would share it.
    array_push(board, array_new(width, false))
    y = y + 1
  end
  return board
end

# An assignment can use only one index, hence the variable for the row.
def set_alive(board, y, x)
  row = board[y % height]
  row[x % width] = true
end

# Adding the size before "%" keeps the result positive: -1 % 8 is -1, not 7.
def alive?(board, y, x)
  return board[(y + height) % height][(x + width) % width]
end

def neighbours(board, y, x)
  count = 0
  dy = -1
  while dy <= 1
    dx = -1
    while dx <= 1
      if (dy != 0 or dx != 0) and alive?(board, y + dy, x + dx)
        count = count + 1
      end
      dx = dx + 1
    end
    dy = dy + 1
  end
  return count
end

# The next generation, on a new board.
def step(board)
  after = empty_board()
  y = 0
  while y < height
    x = 0
    while x < width
      count = neighbours(board, y, x)
      if count == 3 or (count == 2 and board[y][x])
        set_alive(after, y, x)
      end
      x = x + 1
    end
    y = y + 1
  end
  return after
end

def draw(board)
  y = 0
  while y < height
    line = ""
    x = 0
    while x < width
      if board[y][x]
        line = line + "o"
      else
        line = line + "."
      end
      x = x + 1
    end
    puts(line)
    y = y + 1
  end
end

board = empty_board()

# A glider, which moves one cell down and right every four generations ...
set_alive(board, 4, 12)
set_alive(board, 5, 13)
set_alive(board, 6, 11)
set_alive(board, 6, 12)
set_alive(board, 6, 13)

# ... and a blinker, which turns in place.
set_alive(board, 2, 3)
set_alive(board, 2, 4)
set_alive(board, 2, 5)

generation = 0
while generation <= 12
  if generation % 4 == 0
    puts("generation", generation)
    draw(board)
  end
  board = step(board)
  generation = generation + 1
end
