# The argument count of "error" is checked outside the protection.
def f() return pcall(error, 1, 2) end
puts(pcall(f))
puts(pcall(pcall, error, 1, 2))
puts("still here")
pcall(error, 1, 2)
puts("never")
