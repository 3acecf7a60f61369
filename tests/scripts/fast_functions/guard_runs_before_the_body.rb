log = []
def f(x) if x == 1 then error("first") end return x - "a" end
def call_it(x) r = f(x) return r end
puts(pcall(call_it, 1))
puts(pcall(call_it, 2))
