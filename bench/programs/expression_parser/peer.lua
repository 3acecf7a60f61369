local n = 50000
-- A recursive descent parser that evaluates arithmetic texts; the position is kept in an array.
local sub, byte = string.sub, string.byte
local parse_sum

local function parse_number(text, state)
  local value = 0
  local c = sub(text, state[1], state[1])
  while c >= "0" and c <= "9" do
    value = value * 10 + byte(c) - 48
    state[1] = state[1] + 1
    c = sub(text, state[1], state[1])
  end
  return value
end

local function parse_factor(text, state)
  if sub(text, state[1], state[1]) == "(" then
    state[1] = state[1] + 1
    local value = parse_sum(text, state)
    state[1] = state[1] + 1
    return value
  end
  return parse_number(text, state)
end

local function parse_product(text, state)
  local value = parse_factor(text, state)
  while sub(text, state[1], state[1]) == "*" do
    state[1] = state[1] + 1
    value = value * parse_factor(text, state) % 1000003
  end
  return value
end

function parse_sum(text, state)
  local value = parse_product(text, state)
  local c = sub(text, state[1], state[1])
  while c == "+" or c == "-" do
    state[1] = state[1] + 1
    if c == "+" then
      value = value + parse_product(text, state)
    else
      value = value - parse_product(text, state)
    end
    c = sub(text, state[1], state[1])
  end
  return value
end

local function run(rounds)
  local text = "12+34*(56-7)+(8*(9+10)-11)*2+345*(6+(7-(1+2)))-78*9+(10+(20-(30-(40+5))))$"
  local total = 0
  for i = 0, rounds - 1 do
    total = total + parse_sum(text, { i % 3 + 1 })
  end
  return total
end

print(run(n))
