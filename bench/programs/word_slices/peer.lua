local n = 700000
-- Words cut out of a text at its blanks and counted in a map.
local sub = string.sub

local function make_text(words)
  local parts = {}
  local seed = 59
  for i = 1, words do
    seed = seed * 16807 % 2147483647
    parts[i] = "word" .. seed % 1009
  end
  return table.concat(parts, " ") .. " "
end

local function count_words(text)
  local counts = {}
  local start = 1
  for i = 1, #text do
    if sub(text, i, i) == " " then
      local word = sub(text, start, i - 1)
      counts[word] = (counts[word] or 0) + 1
      start = i + 1
    end
  end
  return counts
end

local function run(words)
  local counts = count_words(make_text(words))
  local sum = 0
  for i = 0, 1008 do
    sum = (sum * 3 + (counts["word" .. i] or 0)) % 1000003
  end
  local size = 0
  for _ in pairs(counts) do
    size = size + 1
  end
  print(size)
  print(sum)
end

run(n)
