n = 10000
# A text turned into an array of byte values, then hashed.
def hash(text)
  bytes = string_byte(text, 1, -1)
  size = len(bytes)
  h = 7
  i = 0
  while i < size
    h = (h * 31 + bytes[i]) % 16777213
    i = i + 1
  end
  return h
end

def run(rounds)
  text = string_rep("pack my box with five dozen liquor jugs; ", 90)
  total = 0
  i = 0
  while i < rounds
    total = (total + hash(text) + i) % 1000003
    i = i + 1
  end
  return total
end

puts(run(n))
