# The order holds for large maps too, also after many deletions.
m = map_new()
i = 0
while i < 1000
  m[i] = i
  i = i + 1
end
i = 0
while i < 1000
  if i % 3 != 0
    map_delete(m, i)
  end
  i = i + 1
end
puts(len(m), values(m) == range(0, 999, 3))  #=> 334 true
i = 0
while i < 1000
  m[i] = i
  i = i + 1
end
puts(len(m), array_slice(values(m), 332, 4))  #=> 1000 [996, 999, 1, 2]
