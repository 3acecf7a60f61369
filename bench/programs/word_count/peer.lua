local n = 1500000
-- Word frequencies: a text split into words, a map from word to count, keys in sorted order.
local function make_text(words)
  local parts = {}
  local seed = 99
  for i = 1, words do
    seed = seed * 16807 % 2147483647
    parts[i] = "w" .. seed % 997
  end
  return table.concat(parts, " ")
end

local function run(words)
  local list = {}
  for word in make_text(words):gmatch("[^ ]+") do
    list[#list + 1] = word
  end
  local counts = {}
  for i = 1, words do
    local word = list[i]
    local seen = counts[word]
    if seen == nil then
      counts[word] = 1
    else
      counts[word] = seen + 1
    end
  end
  local names = {}
  for name in pairs(counts) do
    names[#names + 1] = name
  end
  table.sort(names)
  local sum = 0
  for i = 1, #names do
    sum = (sum * 31 + counts[names[i]] * #names[i]) % 1000003
  end
  print(#names)
  print(sum)
end

run(n)
