# Errors of the guard or the body themselves are not caught by the pcall around the guarded function.
def half(x) if x < 0 then error("negative") end return x / divisor end
def protected(x) return pcall(half, x) end
puts(pcall(protected, 4))
divisor = 0
puts(pcall(protected, 4))
puts(pcall(protected, "4"))
puts(pcall(protected, -4))
puts(pcall(pcall, half, 4))
divisor = 2
puts(pcall(protected, 4))
puts("not caught:")
pcall(half, "4")
puts("never")
