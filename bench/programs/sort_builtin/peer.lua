local n = 350000
-- The built-in sort on arrays of integers and of strings.
local function run(count)
  local numbers = {}
  local words = {}
  local seed = 17
  for i = 1, count do
    seed = seed * 16807 % 2147483647
    numbers[i] = seed
    words[i] = "k" .. seed % 100000
  end
  table.sort(numbers)
  table.sort(words)
  local sum = 0
  for i = 1, count do
    sum = (sum * 3 + numbers[i] + #words[i]) % 1000003
  end
  print(sum)
  print(words[1])
  print(words[count])
end

run(n)
