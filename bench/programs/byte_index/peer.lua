local n = 130
-- A text scanned by index: one-character strings fetched and compared.
local sub = string.sub

local function scan(text)
  local vowels = 0
  local words = 0
  for i = 1, #text do
    local c = sub(text, i, i)
    if c == " " then
      words = words + 1
    elseif c == "e" then
      vowels = vowels + 1
    elseif c == "a" then
      vowels = vowels + 1
    end
  end
  return words * 10 + vowels
end

local function run(rounds)
  local text = string.rep("the quick brown fox jumps over a lazy dog and eats an apple ", 1500)
  local total = 0
  for _ = 1, rounds do
    total = total + scan(text)
  end
  return total
end

print(run(n))
