# Finds the shortest way through a maze with a breadth-first search.

rows = []
array_push(rows, "#####################")
array_push(rows, "#S#       #         #")
array_push(rows, "# # ##### # ### ### #")
array_push(rows, "#   #   # #   # #   #")
array_push(rows, "##### # # ### # # ###")
array_push(rows, "#     #   #   # #   #")
array_push(rows, "# ######### ### ### #")
array_push(rows, "#   #       #   #   #")
array_push(rows, "### # ####### # # # #")
array_push(rows, "#             # # #E#")
array_push(rows, "#####################")

# The position of a letter as [row, column].
def locate(maze, letter)
  y = 0
  while y < len(maze)
    found = string_find(maze[y], letter)
    if found != nil
      # Positions found by patterns start at 1, indices at 0.
      return [y, found[0] - 1]
    end
    y = y + 1
  end
  return nil
end

# The map key of a position has the form "row,column".
def name_of(y, x)
  return y + "," + x
end

# Searches outwards from the start; came_from records the step that first reached a position.
def search(maze, start, goal)
  came_from = map_new()
  came_from[name_of(start[0], start[1])] = start
  queue = [start]
  head = 0
  steps = [[0, 1], [1, 0], [0, -1], [-1, 0]]
  while head < len(queue)
    place = queue[head]
    head = head + 1
    if place == goal
      return came_from
    end
    i = 0
    while i < 4
      y = place[0] + steps[i][0]
      x = place[1] + steps[i][1]
      if maze[y][x] != "#" and not table_has_key(came_from, name_of(y, x))
        came_from[name_of(y, x)] = place
        array_push(queue, [y, x])
      end
      i = i + 1
    end
  end
  return nil
end

# Follows the steps back from the goal.
def path_to(came_from, start, goal)
  path = []
  place = goal
  while place != start
    array_push(path, place)
    place = came_from[name_of(place[0], place[1])]
  end
  return array_reverse(path)
end

start = locate(rows, "S")
goal = locate(rows, "E")
puts("from", start, "to", goal)

came_from = search(rows, start, goal)
if came_from == nil
  puts("there is no way")
else
  path = path_to(came_from, start, goal)
  puts("steps:", len(path))
  puts("places visited:", len(came_from))

  # Assigning to an index of a string changes one byte. An assignment can use only
  # one index, so the row is taken out, changed, and put back.
  i = 0
  while i < len(path) - 1
    row = rows[path[i][0]]
    row[path[i][1]] = "."
    rows[path[i][0]] = row
    i = i + 1
  end
  puts(array_join(rows, "\n"))
end
