n = 700000
# Words cut out of a text at its blanks and counted in a map.
def make_text(words)
  parts = []
  seed = 59
  i = 0
  while i < words
    seed = seed * 16807 % 2147483647
    array_push(parts, "word" + seed % 1009)
    i = i + 1
  end
  return array_join(parts, " ") + " "
end

def count_words(text)
  counts = map_new()
  start = 0
  i = 0
  while i < len(text)
    if text[i] == " "
      word = string_sub(text, start + 1, i)
      counts[word] = table_get(counts, word, 0) + 1
      start = i + 1
    end
    i = i + 1
  end
  return counts
end

def run(words)
  counts = count_words(make_text(words))
  sum = 0
  i = 0
  while i < 1009
    sum = (sum * 3 + table_get(counts, "word" + i, 0)) % 1000003
    i = i + 1
  end
  puts(len(counts))
  puts(sum)
end

run(n)
