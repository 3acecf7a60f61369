m = map_new()
m["b"] = 1
m["a"] = 2
m["c"] = 3
puts(m)
m["b"] = 4
puts(m)
map_delete(m, "b")
puts(m)
m["b"] = 5
puts(m, values(m))
big = map_new()
i = 100
while i > 0 do
  big[i] = i
  i = i - 1
end
puts(array_slice(values(big), 0, 5), array_slice(values(big), -3), len(big))
