# The line break after "return" ends the statement.
def f()
  return
    42
end
puts(f())
def g() return 1 puts("unreachable") end
puts(g())
