count = 0
chunk = load("count = count + 1 return count")
puts(chunk(), chunk(), count)
puts(count)
nested = load("return load(\"count = count + 10 return count\")")
puts(nested()(), nested()())
# Names at the top of a chunk are globals.
load("made = 5 def made_too() return made end")()
puts(made, made_too())
