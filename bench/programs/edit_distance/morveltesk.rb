n = 2500
# Edit distance of two texts by dynamic programming over two rows.
def letters(size, seed)
  alphabet = "abcd"
  text = ""
  i = 0
  while i < size
    seed = seed * 16807 % 2147483647
    text = text + alphabet[seed % 4]
    i = i + 1
  end
  return text
end

def distance(a, b)
  width = len(b)
  previous = range(width + 1)
  i = 0
  while i < len(a)
    c = a[i]
    current = [i + 1]
    left = i + 1
    j = 0
    while j < width
      best = previous[j]
      if c != b[j]
        best = best + 1
      end
      if left + 1 < best
        best = left + 1
      end
      if previous[j + 1] + 1 < best
        best = previous[j + 1] + 1
      end
      array_push(current, best)
      left = best
      j = j + 1
    end
    previous = current
    i = i + 1
  end
  return previous[width]
end

puts(distance(letters(n, 1), letters(n, 2)))
