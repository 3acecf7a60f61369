local n = 4000
-- A lexer's scan: every byte of a text compared with one-byte literals, names, numbers and quoted texts skipped.
local sub = string.sub

local function scan(text, counts)
  local size = #text
  local i = 1
  while i <= size do
    local c = sub(text, i, i)
    if c == " " or c == "\n" then
      i = i + 1
    elseif (c >= "a" and c <= "z") or c == "_" then
      counts[1] = counts[1] + 1
      while (c >= "a" and c <= "z") or c == "_" do
        i = i + 1
        c = sub(text, i, i)
      end
    elseif c >= "0" and c <= "9" then
      counts[2] = counts[2] + 1
      while c >= "0" and c <= "9" do
        i = i + 1
        c = sub(text, i, i)
      end
    elseif c == "'" then
      counts[3] = counts[3] + 1
      i = i + 1
      while sub(text, i, i) ~= "'" do
        i = i + 1
      end
      i = i + 1
    elseif c == "#" then
      while sub(text, i, i) ~= "\n" do
        i = i + 1
      end
    else
      counts[4] = counts[4] + 1
      i = i + 1
    end
  end
end

local function run(rounds)
  local line =
    "total = total + price_of(item, 120) * 3 - rest[45] # the sum so far\nname = 'a quoted text'; i = i + 1\n"
  local text = line:rep(20)
  local counts = { 0, 0, 0, 0 }
  for _ = 1, rounds do
    scan(text, counts)
  end
  for i = 1, 4 do
    print(counts[i])
  end
end

run(n)
