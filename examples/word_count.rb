# Counts the words of a file and prints the most frequent ones.
# The script first writes the file, so that it can run anywhere.

path = "word_count_sample.txt"

# A call must stand on one line, so the text is put together line by line.
write_file(path, "The quick brown fox jumps over the lazy dog.\n")
append_file(path, "The dog sleeps; the fox runs on, and on, and on.\n")
append_file(path, "Quick foxes and lazy dogs: the end.\n")

# Keeps letters, in lower case, and turns every other byte into a blank.
def normalise(text)
  codes = string_byte(string_lower(text), 1, -1)
  i = 0
  while i < len(codes)
    if codes[i] < 97 or codes[i] > 122
      codes[i] = 32
    end
    i = i + 1
  end
  # string_char takes the codes one by one; joining small strings does the same.
  letters = []
  i = 0
  while i < len(codes)
    array_push(letters, string_char(codes[i]))
    i = i + 1
  end
  return array_join(letters)
end

# A map from word to the number of times it occurs.
def count_words(text)
  counts = map_new()
  words = string_split(normalise(text), " ")
  i = 0
  while i < len(words)
    word = words[i]
    # Two blanks in a row leave an empty piece between them.
    if word != ""
      counts[word] = table_get(counts, word, 0) + 1
    end
    i = i + 1
  end
  return counts
end

# table_sort has no function to compare with, so every word gets a key that sorts as
# text: 1000 - n brings the frequent words to the front and has three digits each time.
def by_frequency(counts)
  sort_keys = []
  words = keys(counts)
  i = 0
  while i < len(words)
    array_push(sort_keys, to_s(1000 - counts[words[i]]) + " " + words[i])
    i = i + 1
  end
  table_sort(sort_keys)
  sorted = []
  i = 0
  while i < len(sort_keys)
    array_push(sorted, string_split(sort_keys[i], " ")[1])
    i = i + 1
  end
  return sorted
end

text = read_file(path)
counts = count_words(text)
ranking = by_frequency(counts)

puts("bytes:", len(text))
puts("lines:", len(string_gmatch(text, "\n")))
puts("different words:", len(counts))
puts("most frequent:")
i = 0
while i < 6
  word = ranking[i]
  puts("  " + string_rep("#", counts[word]) + " " + word + " (" + counts[word] + ")")
  i = i + 1
end
