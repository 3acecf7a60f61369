# The fallback reads the global anew each time.
def f(c)
  if c then g = "local" end
  before = g
  load("g = \"changed\"")()
  return [before, g]
end
g = "first"
puts(f(false), f(true), g)
