def call_it(f) r = f(1) return r end
puts(pcall(call_it, nil))
puts(pcall(call_it, 5))
puts(pcall(call_it, 1.5))
puts(pcall(call_it, true))
puts(pcall(call_it, "puts"))
puts(pcall(call_it, []))
puts(pcall(call_it, map_new()))
def twice() puts("once")(2) end
puts(pcall(twice))
