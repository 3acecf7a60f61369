load("def lib_half(x)\n if x < 0 then error(\"negative\") end\n return x / lib_two\nend", "lib")()
lib_two = 2
puts(lib_half(3), pcall(lib_half, -1), pcall(lib_half))
def call_it(x) r = lib_half(x) return r end
puts(pcall(call_it, "x"))
lib_two = 0
puts(pcall(call_it, 1))
def miscall() lib_half() end
puts(pcall(miscall))
