n = 30000
# Texts of about a kilobyte built by repeated append of short pieces.
def build(pieces, count)
  text = ""
  i = 0
  while i < count
    text << pieces[i % 4]
    i += 1
  end
  text
end

def run(rounds)
  pieces = ["alpha ", "be ", "gamma-delta ", "x"]
  total = 0
  i = 0
  while i < rounds
    text = build(pieces, 100 + i % 200)
    total += text.length
    if text[i % 500] == "a"
      total += 1
    end
    i += 1
  end
  total
end

puts run(n)
