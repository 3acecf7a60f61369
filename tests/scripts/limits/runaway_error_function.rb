# A rebound "error" whose own guard calls it again and again.
def f(x) if x then error("bad") end return "body" end
def call_it(x) r = f(x) return r end
def error(m) if m then error("again") end return 1 end
r = pcall(call_it, 1)
puts(len(r), r[0], r[1], string_end_with?(r[2], "stack overflow"))
puts(f(nil))
