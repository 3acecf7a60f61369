# All 256 bytes: exactly 26 of them change, and back again.
all = ""
i = 0
while i < 256
  all = all + string_char(i)
  i = i + 1
end
upper = string_byte(string_upper(all), 1, -1)
lower = string_byte(string_lower(all), 1, -1)
raised = []
lowered = []
i = 0
while i < 256
  if upper[i] != i
    array_push(raised, upper[i])
  end
  if lower[i] != i
    array_push(lowered, lower[i])
  end
  i = i + 1
end
puts(raised == range(65, 90), lowered == range(97, 122))  #=> true true
