local n = 4000000
-- Sieve of Eratosthenes: loads and stores of array elements with a stride.
local function run(limit)
  local composite = {}
  for i = 1, limit do
    composite[i] = false
  end
  local count = 0
  local sum = 0
  for i = 2, limit do
    if not composite[i] then
      count = count + 1
      sum = sum + i
      for j = i * i, limit, i do
        composite[j] = true
      end
    end
  end
  print(count)
  print(sum)
end

run(n)
