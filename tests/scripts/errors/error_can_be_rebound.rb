# A "def" named "error" replaces the global; the built-in lives on where it was kept.
builtin = error
def error(message)
  puts("custom", message)
  return "went on"
end
def f() return error("a") + "!" end
puts(f())
puts(pcall(error, "b"))
puts(pcall(builtin, "c"))
def g() builtin("d") end
puts(pcall(g))
error = len
puts(error("four"))
error = builtin
error("e")
