local n = 40000
-- A map as a table of open orders: it grows and shrinks in waves, and its keys only ever rise.
local function run(rounds)
  local m = {}
  local first = 0
  local last = 0
  local sum = 0
  for round = 0, rounds - 1 do
    local limit = last + 100 + round * 37 % 200
    while last < limit do
      m[last] = last % 1009
      last = last + 1
    end
    while last - first > 50 do
      sum = (sum * 3 + m[first]) % 1000003
      m[first] = nil
      first = first + 1
    end
  end
  local size = 0
  for _ in pairs(m) do
    size = size + 1
  end
  print(size)
  print(sum)
end

run(n)
