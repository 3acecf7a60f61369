def more?(limit)
  table_set(counter, 0, counter[0] + 1)
  return counter[0] <= limit
end
counter = [0]
while more?(3) do puts("turn", counter[0]) end
puts("tests", counter[0])
