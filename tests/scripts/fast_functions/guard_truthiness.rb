# Only nil and false let the call pass.
def f(x) if x then error("stopped") end return "passed" end
def call_it(x) r = f(x) return r end
puts(f(nil), f(false))
puts(pcall(call_it, true), pcall(call_it, 0), pcall(call_it, 0.0), pcall(call_it, ""), pcall(call_it, []), pcall(call_it, len))
def g(x) if not x then error("missing") end return x end
puts(g(0), pcall(g, nil), pcall(g, false), pcall(g, "there"))
def h(x) if [x] then error("always") end return x end
puts(pcall(h, nil))
