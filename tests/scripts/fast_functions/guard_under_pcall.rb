# A guarded function fails under pcall with two elements, and without a location in its arity message.
def half(x) if x < 0 then error("negative") end return x / 2 end
puts(pcall(half, 3))
puts(pcall(half, -1))
puts(pcall(half))
puts(pcall(half, 1, 2))
puts(len(pcall(half, -1)), type_of(pcall(half, -1)[1]))
# Called by another function it is an ordinary error with three elements.
def call_it(x) y = half(x) return y end
puts(pcall(call_it, 3))
puts(pcall(call_it, -1))
def miscall() half() end
puts(pcall(miscall))
