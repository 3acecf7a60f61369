# The guarded form is recognised by the name alone: the global "error" is called, not the parameter.
def f(error) if error then error("bad") end return "body" end
puts(f(nil), f(false))
puts(pcall(f, puts))
def call_it(x) r = f(x) return r end
puts(pcall(call_it, puts))
# An ordinary function calls its parameter.
def g(error) x = 1 if error then error("bad") end return "body" end
puts(g(puts))
