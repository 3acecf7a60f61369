n = 700000
# Words cut out of a text at its blanks and counted in a map.
def make_text(words)
  parts = []
  seed = 59
  i = 0
  while i < words
    seed = seed * 16807 % 2147483647
    parts << "word#{seed % 1009}"
    i += 1
  end
  parts.join(" ") + " "
end

def count_words(text)
  counts = Hash.new(0)
  size = text.length
  start = 0
  i = 0
  while i < size
    if text[i] == " "
      counts[text[start, i - start]] += 1
      start = i + 1
    end
    i += 1
  end
  counts
end

def run(words)
  counts = count_words(make_text(words))
  sum = 0
  i = 0
  while i < 1009
    sum = (sum * 3 + counts["word#{i}"]) % 1000003
    i += 1
  end
  puts counts.size
  puts sum
end

run(n)
