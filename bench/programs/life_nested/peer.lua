local n = 400
-- The game of life on a board with a margin of dead cells: cells reached by two indices, `and` and `or`.
-- Rows and columns are numbered from 0 as in the other languages; the arrays start at 1.
local function make_board(size)
  local board = {}
  for y = 1, size + 2 do
    local row = {}
    for x = 1, size + 2 do
      row[x] = 0
    end
    board[y] = row
  end
  return board
end

local function scatter(board, size)
  local seed = 5
  for y = 2, size + 1 do
    local row = board[y]
    for x = 2, size + 1 do
      seed = seed * 16807 % 2147483647
      if seed % 3 == 0 then
        row[x] = 1
      end
    end
  end
end

local function neighbours(board, x, y)
  local count = 0
  for dy = -1, 1 do
    for dx = -1, 1 do
      if (dx ~= 0 or dy ~= 0) and board[y + dy][x + dx] == 1 then
        count = count + 1
      end
    end
  end
  return count
end

local function next_generation(board, size)
  local fresh = make_board(size)
  for y = 2, size + 1 do
    local row = fresh[y]
    for x = 2, size + 1 do
      local count = neighbours(board, x, y)
      if count == 3 or (count == 2 and board[y][x] == 1) then
        row[x] = 1
      end
    end
  end
  return fresh
end

local function run(generations)
  local size = 64
  local board = make_board(size)
  scatter(board, size)
  for _ = 1, generations do
    board = next_generation(board, size)
  end
  local sum = 0
  for y = 2, size + 1 do
    for x = 2, size + 1 do
      sum = (sum * 3 + board[y][x]) % 1000003
    end
  end
  return sum
end

print(run(n))
