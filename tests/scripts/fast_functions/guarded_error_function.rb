# The rebound "error" may itself be a guarded function: its own guard then calls it again.
def f(x) if x then error("outer") end return "body" end
def error(m) if m == "outer" then error("inner") end return "quiet" end
puts(f(1), error("outer"), error("other"))
puts(pcall(f, 1), pcall(error, "outer"), pcall(error, "other"))
