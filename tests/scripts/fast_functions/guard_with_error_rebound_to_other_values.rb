def f(x) if x then error("bad") end return "body" end
def call_it(x) r = f(x) return r end
builtin = error
error = 5
puts(pcall(call_it, 1))
error = nil
puts(pcall(call_it, 1), pcall(call_it, nil), pcall(f, 1))
error = len
puts(pcall(call_it, 1))
def error() return 1 end
puts(pcall(call_it, 1))
def error(a, b) return 1 end
puts(pcall(call_it, 1))
def error(m)
  return m - 1
end
puts(pcall(call_it, 1))
error = table_set
puts(pcall(call_it, 1))
error = pcall
puts(pcall(call_it, 1))
error = builtin
puts(pcall(call_it, 1))
