n = 130
# A text scanned by index: one-character strings fetched and compared.
def scan(text)
  size = len(text)
  vowels = 0
  words = 0
  i = 0
  while i < size
    c = text[i]
    if c == " "
      words = words + 1
    elsif c == "e"
      vowels = vowels + 1
    elsif c == "a"
      vowels = vowels + 1
    end
    i = i + 1
  end
  return words * 10 + vowels
end

def run(rounds)
  text = string_rep("the quick brown fox jumps over a lazy dog and eats an apple ", 1500)
  total = 0
  i = 0
  while i < rounds
    total = total + scan(text)
    i = i + 1
  end
  return total
end

puts(run(n))
