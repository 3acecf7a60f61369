# The body is evaluated after the rebound "error" has returned.
def f(x) if x then error("bad") end return state end
def error(m) load("state = \"after\"")() return nil end
state = "before"
puts(f(nil), f(1), state)
