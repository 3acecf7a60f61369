m = map_new()
i = 0
while i < 200000 do
  m["key" + i] = i
  i = i + 1
end
puts(len(m), m["key0"], m["key199999"], m["key200000"])
i = 0
while i < 200000 do
  if i % 3 != 0 then map_delete(m, "key" + i) end
  i = i + 1
end
puts(len(m), m["key3"], m["key4"], array_slice(values(m), 0, 3), array_slice(values(m), -1))
