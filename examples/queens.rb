# The eight queens: in how many ways can n queens stand on an n by n board without
# attacking one another? Solved by backtracking.

# Occupied columns and diagonals, in one array each. Arrays are shared, so every call of
# place sees and changes the same ones.
def new_board(size)
  board = map_new()
  board["size"] = size
  board["columns"] = array_new(size, false)
  board["rising"] = array_new(2 * size, false)
  board["falling"] = array_new(2 * size, false)
  board["queens"] = []
  board["solutions"] = []
  return board
end

# table_set can store into nested containers, which an assignment cannot.
def mark(board, row, column, value)
  table_set(board["columns"], column, value)
  table_set(board["rising"], row + column, value)
  table_set(board["falling"], row - column + board["size"], value)
end

def free?(board, row, column)
  if board["columns"][column] or board["rising"][row + column]
    return false
  end
  return not board["falling"][row - column + board["size"]]
end

# Places a queen in this row, then in the rows below it.
def place(board, row)
  if row == board["size"]
    array_push(board["solutions"], table_clone(board["queens"]))
    return
  end
  column = 0
  while column < board["size"]
    if free?(board, row, column)
      mark(board, row, column, true)
      array_push(board["queens"], column)
      place(board, row + 1)
      array_pop(board["queens"])
      mark(board, row, column, false)
    end
    column = column + 1
  end
end

def solve(size)
  board = new_board(size)
  place(board, 0)
  return board["solutions"]
end

def draw(solution)
  row = 0
  while row < len(solution)
    line = string_rep(". ", len(solution))
    line[2 * solution[row]] = "Q"
    puts(string_rstrip(line))
    row = row + 1
  end
end

size = 1
while size <= 7
  puts("size " + size + ":", len(solve(size)), "solutions")
  size = size + 1
end

solutions = solve(8)
puts("size 8:", len(solutions), "solutions, for example", solutions[0])
draw(solutions[0])
