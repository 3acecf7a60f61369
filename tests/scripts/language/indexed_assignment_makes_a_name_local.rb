# g[0] = v reads the global, stores into it, and binds the result to a local of the same name.
g = [5]
s = "abc"
def change_array()
  g[0] = 1
  g = [9]
  return g
end
def change_string()
  s[0] = "x"
  return s
end
puts(change_array(), g)
puts(change_string(), s)
