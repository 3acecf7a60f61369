local n = 24000000
-- A while loop over locals of a function: remainder, equality, branches, sums.
local function run(limit)
  local i = 0
  local total = 0
  while i < limit do
    if i % 3 == 0 then
      total = total + i
    elseif i % 5 == 0 then
      total = total - 1
    else
      total = total + 2
    end
    i = i + 1
  end
  return total
end

print(run(n))
