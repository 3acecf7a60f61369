def last(a, a, c) return c end
def first(a, a) return a end
def guarded(a, a, c) if c == "stop" then error("stopped") end return [a, c] end
puts(last(1, 2, 3), first(1, 2), guarded(1, 2, 3))
puts(pcall(guarded, 1, "stop", 3), pcall(guarded, 1, 2, "stop"), pcall(guarded, 1, 2))
