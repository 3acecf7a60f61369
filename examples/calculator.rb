# A calculator: turns text like "2 * (3 + 4)" into tokens, parses them and computes the value.
#
# The parser is recursive descent: one function for each level of precedence.
#   expression = term   { ("+" | "-") term }
#   term       = factor { ("*" | "/") factor }
#   factor     = number | "-" factor | "(" expression ")"
# Its state is a map with the tokens and the position of the next one.

def digit?(text)
  # Indexing a string beyond its end gives nil, which is not a digit.
  if text == nil
    return false
  end
  return text >= "0" and text <= "9"
end

def tokenise(text)
  tokens = []
  i = 0
  while i < len(text)
    c = text[i]
    if c == " "
      i = i + 1
    elsif digit?(c)
      start = i
      while digit?(text[i]) or text[i] == "."
        i = i + 1
      end
      # Positions in string_sub count from 1, indices from 0.
      array_push(tokens, to_number(string_sub(text, start + 1, i)))
    elsif string_include?("+-*/()", c)
      array_push(tokens, c)
      i = i + 1
    else
      error("unexpected character '" + c + "'")
    end
  end
  return tokens
end

def peek(state)
  return state["tokens"][state["next"]]
end

def advance(state)
  token = peek(state)
  state["next"] = state["next"] + 1
  return token
end

def expression(state)
  value = term(state)
  while peek(state) == "+" or peek(state) == "-"
    if advance(state) == "+"
      value = value + term(state)
    else
      value = value - term(state)
    end
  end
  return value
end

def term(state)
  value = factor(state)
  while peek(state) == "*" or peek(state) == "/"
    if advance(state) == "*"
      value = value * factor(state)
    else
      divisor = factor(state)
      if divisor == 0
        error("cannot divide by zero")
      end
      value = to_number(value / divisor)
    end
  end
  return value
end

def factor(state)
  token = advance(state)
  if token == "-"
    return -factor(state)
  elsif token == "("
    value = expression(state)
    if advance(state) != ")"
      error("missing ')'")
    end
    return value
  elsif type_of(token) == "integer" or type_of(token) == "float"
    return token
  end
  error("a number is expected, found " + token)
end

def calculate(text)
  state = map_new()
  state["tokens"] = tokenise(text)
  state["next"] = 0
  value = expression(state)
  if peek(state) != nil
    error("unexpected " + peek(state))
  end
  return value
end

inputs = ["1 + 2 * 3", "(1 + 2) * 3", "-(2 + 3) * -4", "7 / 2", "6 / 3", "1.5 * 4 - 0.25", "2 * (3 + (4 - 1)) / 4"]
array_push(inputs, "10 / (5 - 5)", "2 * (3 + 4", "2 +", "3 $ 4", "1 2")

i = 0
while i < len(inputs)
  # calculate returns a value or fails with an error; pcall tells which.
  result = pcall(calculate, inputs[i])
  if len(result) == 2
    puts(inputs[i] + " = " + result[1])
  else
    puts(inputs[i] + "   (" + result[2] + ")")
  end
  i = i + 1
end
