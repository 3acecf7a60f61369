n = 1500000
# Word frequencies: a text split into words, a map from word to count, keys in sorted order.
def make_text(words)
  parts = []
  seed = 99
  i = 0
  while i < words
    seed = seed * 16807 % 2147483647
    parts << "w#{seed % 997}"
    i += 1
  end
  parts.join(" ")
end

def run(words)
  list = make_text(words).split(" ")
  counts = {}
  i = 0
  while i < words
    word = list[i]
    seen = counts[word]
    if seen == nil
      counts[word] = 1
    else
      counts[word] = seen + 1
    end
    i += 1
  end
  names = counts.keys.sort
  sum = 0
  i = 0
  while i < names.length
    sum = (sum * 31 + counts[names[i]] * names[i].length) % 1000003
    i += 1
  end
  puts names.length
  puts sum
end

run(n)
