# The chunk's own name stands in front, not the script's.
chunk = load("x = 1\ny = x + nil", "part two")
puts("loaded")
chunk()
