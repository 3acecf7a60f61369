# The message of a chunk that does not compile is passed on as it is.
puts("start")
f = load("if x then")
