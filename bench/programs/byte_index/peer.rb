n = 130
# A text scanned by index: one-character strings fetched and compared.
def scan(text)
  size = text.length
  vowels = 0
  words = 0
  i = 0
  while i < size
    c = text[i]
    if c == " "
      words += 1
    elsif c == "e"
      vowels += 1
    elsif c == "a"
      vowels += 1
    end
    i += 1
  end
  words * 10 + vowels
end

def run(rounds)
  text = "the quick brown fox jumps over a lazy dog and eats an apple " * 1500
  total = 0
  i = 0
  while i < rounds
    total += scan(text)
    i += 1
  end
  total
end

puts run(n)
