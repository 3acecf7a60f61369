# A text adventure as a state machine. Scripts have no keyboard input, so the player's
# commands come from a list; change the list to play another game.

rooms = map_new()

def add_room(name, text)
  room = map_new()
  room["text"] = text
  room["exits"] = map_new()
  room["things"] = []
  table_set(rooms, name, room)
end

def add_exit(from, direction, to)
  table_set(rooms[from]["exits"], direction, to)
end

add_room("cellar", "A damp cellar. Stairs lead up.")
add_room("kitchen", "A kitchen with a cold stove.")
add_room("garden", "A garden behind a high wall.")
add_exit("cellar", "up", "kitchen")
add_exit("kitchen", "down", "cellar")
add_exit("garden", "south", "kitchen")
array_push(rooms["cellar"]["things"], "lamp", "key")
array_push(rooms["kitchen"]["things"], "bread")

# Names assigned in a function are local, so state that functions change is kept in a map.
game = map_new()
game["place"] = "cellar"
game["bag"] = []
game["moves"] = 0
game["over"] = false

def here
  return rooms[game["place"]]
end

# The index of a value in an array, or nil.
def index_of(list, value)
  i = 0
  while i < len(list)
    if list[i] == value
      return i
    end
    i = i + 1
  end
  return nil
end

def look(word)
  puts(here()["text"])
  puts("Exits: " + array_join(keys(here()["exits"]), ", "))
  if len(here()["things"]) > 0
    puts("You see: " + array_join(here()["things"], ", "))
  end
end

def go(word)
  target = table_get(here()["exits"], word)
  if target == nil
    puts("There is no way " + word + ".")
    return
  end
  table_set(game, "place", target)
  look("")
  if target == "garden"
    puts("Fresh air! You have escaped.")
    table_set(game, "over", true)
  end
end

def take(word)
  at = index_of(here()["things"], word)
  if at == nil
    puts("There is no " + word + " here.")
    return
  end
  array_push(game["bag"], table_remove(here()["things"], at))
  puts("You take the " + word + ".")
end

def use(word)
  if index_of(game["bag"], word) == nil
    puts("You have no " + word + ".")
  elsif word == "key" and game["place"] == "kitchen"
    add_exit("kitchen", "north", "garden")
    puts("The north door opens.")
  else
    puts("Nothing happens.")
  end
end

# Functions are values: verbs are looked up in a map and called.
verbs = map_new()
verbs["look"] = look
verbs["go"] = go
verbs["take"] = take
verbs["use"] = use

def obey(command)
  words = string_split(command, " ", 2)
  verb = table_get(verbs, words[0])
  if verb == nil
    puts("You cannot " + words[0] + ".")
  else
    table_set(game, "moves", game["moves"] + 1)
    # A one-word command has no second part: joining it gives the empty string.
    verb(array_join(array_slice(words, 1)))
  end
end

commands = ["look", "take sword", "take key", "go north", "go up", "dance", "go north"]
array_push(commands, "use lamp", "take bread", "use bread", "use key", "go north", "look")

i = 0
while i < len(commands) and not game["over"]
  puts("> " + commands[i])
  obey(commands[i])
  i = i + 1
end
puts("Moves: " + game["moves"] + ", in the bag: " + array_join(game["bag"], " and "))
