n = 10000
# A text turned into an array of byte values, then hashed.
def hash_bytes(text)
  bytes = text.bytes
  size = bytes.length
  h = 7
  i = 0
  while i < size
    h = (h * 31 + bytes[i]) % 16777213
    i += 1
  end
  h
end

def run(rounds)
  text = "pack my box with five dozen liquor jugs; " * 90
  total = 0
  i = 0
  while i < rounds
    total = (total + hash_bytes(text) + i) % 1000003
    i += 1
  end
  total
end

puts run(n)
