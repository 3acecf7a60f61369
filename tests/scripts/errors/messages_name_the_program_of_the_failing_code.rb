load("def lib_divide(a, b)\n c = a / b\n return c\nend", "lib.rb")()
def call_back(f) return f("x") end
def local_bad(x) y = x - 1 return y end
puts(pcall(lib_divide, 1, 0))
def wrapper() return lib_divide(nil, 1) end
puts(pcall(wrapper))
load("def lib_call(f) return f(1, 0) end", "other")()
puts(pcall(lib_call, lib_divide))
puts(pcall(lib_call, 7))
puts(pcall(call_back, local_bad))
puts(pcall(load("\n\n\nx = 1 / 0")))
puts(pcall(load("x = 1 / 0", "")))
