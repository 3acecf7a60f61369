r = pcall(load, string_rep("[", 1000000) + string_rep("]", 1000000))
if len(r) == 3 then puts(string_end_with?(r[2], "stack overflow")) else puts(len(r[1]()) == 1) end
a = load(string_rep("[", 500) + string_rep("]", 500))()
depth = 0
while a != nil do
  a = a[0]
  depth = depth + 1
end
puts(depth)
