# pcall judges by the message: an empty one counts as success with nil.
def f(x) if x then error("") end return "body" end
puts(pcall(f, true), len(pcall(f, true)), pcall(f, false))
def call_it() f(true) end
r = pcall(call_it)
puts(len(r), r[0], r[1], len(r[2]))
