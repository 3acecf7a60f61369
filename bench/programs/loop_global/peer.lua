n = 8000000
-- The loop of loop_local at top level, where every name is a global variable.
i = 0
total = 0
while i < n do
  if i % 3 == 0 then
    total = total + i
  elseif i % 5 == 0 then
    total = total - 1
  else
    total = total + 2
  end
  i = i + 1
end

print(total)
