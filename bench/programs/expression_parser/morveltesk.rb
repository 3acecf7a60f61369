n = 50000
# A recursive descent parser that evaluates arithmetic texts; the position is kept in an array.
def parse_number(text, state)
  value = 0
  c = text[state[0]]
  while c >= "0" and c <= "9"
    value = value * 10 + string_byte(c)[0] - 48
    state[0] = state[0] + 1
    c = text[state[0]]
  end
  return value
end

def parse_factor(text, state)
  if text[state[0]] == "("
    state[0] = state[0] + 1
    value = parse_sum(text, state)
    state[0] = state[0] + 1
    return value
  end
  return parse_number(text, state)
end

def parse_product(text, state)
  value = parse_factor(text, state)
  while text[state[0]] == "*"
    state[0] = state[0] + 1
    value = value * parse_factor(text, state) % 1000003
  end
  return value
end

def parse_sum(text, state)
  value = parse_product(text, state)
  c = text[state[0]]
  while c == "+" or c == "-"
    state[0] = state[0] + 1
    if c == "+"
      value = value + parse_product(text, state)
    else
      value = value - parse_product(text, state)
    end
    c = text[state[0]]
  end
  return value
end

def run(rounds)
  text = "12+34*(56-7)+(8*(9+10)-11)*2+345*(6+(7-(1+2)))-78*9+(10+(20-(30-(40+5))))$"
  total = 0
  i = 0
  while i < rounds
    total = total + parse_sum(text, [i % 3])
    i = i + 1
  end
  return total
end

puts(run(n))
