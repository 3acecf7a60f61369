# A guarded function calls whatever "error" is at that moment; when that returns, the body goes on.
def half(x) if x < 0 then error("negative") end return x / 2 end
builtin = error
def error(message)
  puts("noted:", message)
  return "ignored"
end
puts(half(-8))
puts(half(8))
# Under pcall the guarded function does not call "error" at all.
puts(pcall(half, -8))
def call_it(x) r = half(x) return r end
puts(pcall(call_it, -8))
error = builtin
puts(pcall(call_it, -8))
