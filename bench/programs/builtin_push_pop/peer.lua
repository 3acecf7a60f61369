local n = 110000
-- An array used as a stack: bursts of pushes and pops.
local function run(rounds)
  local stack = {}
  local total = 0
  for round = 0, rounds - 1 do
    for i = 0, 49 do
      table.insert(stack, round + i)
    end
    for _ = 1, 49 do
      total = total + table.remove(stack) % 7
    end
  end
  print(#stack)
  print(total)
end

run(n)
