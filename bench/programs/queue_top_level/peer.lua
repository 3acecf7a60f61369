local n = 1500000
-- A queue worked by the top level itself: tasks taken from the front of a short array, put back at its end.
local queue = {}
for i = 0, 31 do
  table.insert(queue, { i, i * 7 % 11 + 1 })
end
local sum = 0
for i = 32, n - 1 do
  local task = table.remove(queue, 1)
  local left = task[2] - 1
  sum = (sum * 3 + task[1] + left) % 1000003
  if left > 0 then
    task[2] = left
    table.insert(queue, task)
  else
    table.insert(queue, { i, i % 9 + 1 })
  end
end
print(#queue)
print(sum)
