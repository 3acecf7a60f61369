n = 1500000
# Word frequencies: a text split into words, a map from word to count, keys in sorted order.
def make_text(words)
  parts = []
  seed = 99
  i = 0
  while i < words
    seed = seed * 16807 % 2147483647
    array_push(parts, "w" + seed % 997)
    i = i + 1
  end
  return array_join(parts, " ")
end

def run(words)
  list = string_split(make_text(words), " ")
  counts = map_new()
  i = 0
  while i < words
    word = list[i]
    seen = counts[word]
    if seen == nil
      counts[word] = 1
    else
      counts[word] = seen + 1
    end
    i = i + 1
  end
  names = keys(counts)
  sum = 0
  i = 0
  while i < len(names)
    sum = (sum * 31 + counts[names[i]] * len(names[i])) % 1000003
    i = i + 1
  end
  puts(len(names))
  puts(sum)
end

run(n)
