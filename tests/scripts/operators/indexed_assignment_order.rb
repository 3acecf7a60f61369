# The container is read first, then the index, then the value; the container is stored back last.
def v(name, value)
  print(name, " ")
  return value
end
a = [0]
a[v("index", 0)] = v("value", 5)
puts(a)
def replace() load("a = [9, 9]")() return 7 end
old = a
a[0] = replace()
puts(a, a == old)
def no_target() missing[v("index", 0)] = 1 end
puts(pcall(no_target))
def bad_index() b = [1] b[nil] = v("value", 1) end
puts(pcall(bad_index))
