local n = 3500000
-- A stack worked by the top level itself: a tree of numbers walked depth first.
local stack = { 1 }
local count = 0
local sum = 0
while #stack > 0 do
  local node = table.remove(stack)
  count = count + 1
  sum = (sum * 3 + node) % 1000003
  local child = node * 2
  if child <= n then
    table.insert(stack, child)
    if child < n then
      table.insert(stack, child + 1)
    end
  end
end
print(count)
print(sum)
