# Tic-tac-toe against a perfect opponent: the minimax search looks at every possible game.
# Two perfect players always draw; a player who makes a mistake loses.

lines = [[0, 1, 2], [3, 4, 5], [6, 7, 8], [0, 3, 6], [1, 4, 7], [2, 5, 8], [0, 4, 8], [2, 4, 6]]

# The board is a string of nine characters: "X", "O" or "." for an empty square.
# Strings are values: a function can change its copy without affecting the caller's.
def winner(board)
  i = 0
  while i < 8
    a = board[lines[i][0]]
    if a != "." and a == board[lines[i][1]] and a == board[lines[i][2]]
      return a
    end
    i = i + 1
  end
  return nil
end

def full?(board)
  return not string_include?(board, ".")
end

def other(player)
  if player == "X"
    return "O"
  end
  return "X"
end

# Known results, so that no position is searched twice.
known = map_new()

# 1 if the player to move wins, -1 if that player loses, 0 for a draw.
def value(board, player)
  position = board + player
  if table_has_key(known, position)
    return known[position]
  end
  best = 0
  if winner(board) != nil
    # Only the opponent can have won, having made the last move.
    best = -1
  elsif not full?(board)
    best = -2
    i = 0
    while i < 9
      if board[i] == "."
        after = board
        after[i] = player
        best = math_max(best, -value(after, other(player)))
      end
      i = i + 1
    end
  end
  table_set(known, position, best)
  return best
end

# The first of the best moves.
def best_move(board, player)
  best = -2
  move = nil
  i = 0
  while i < 9
    if board[i] == "."
      after = board
      after[i] = player
      result = -value(after, other(player))
      if result > best
        best = result
        move = i
      end
    end
    i = i + 1
  end
  return move
end

def draw(board)
  i = 1
  while i < 9
    puts("  " + string_sub(board, i, i + 2))
    i = i + 3
  end
end

# Plays a game. X follows the given moves while they last, then plays perfectly too.
def play(title, given)
  puts(title)
  board = "........."
  player = "X"
  moves = []
  while winner(board) == nil and not full?(board)
    if player == "X" and len(given) > 0
      move = array_shift(given)
    else
      move = best_move(board, player)
    end
    board[move] = player
    array_push(moves, player + move)
    player = other(player)
  end
  puts("  " + array_join(moves, " "))
  draw(board)
  if winner(board) == nil
    puts("  a draw")
  else
    puts("  " + winner(board) + " wins")
  end
end

play("Two perfect players:", [])
play("X starts in a corner:", [0])
play("X overlooks a threat:", [0, 8, 2])
puts("positions searched:", len(known))
