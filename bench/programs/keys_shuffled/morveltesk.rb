n = 150000
# A map from the numbers 1 to n, filled in one random order and read in another.
def shuffled(count, seed)
  a = range(1, count)
  i = count - 1
  while i > 0
    seed = seed * 16807 % 2147483647
    j = seed % (i + 1)
    held = a[i]
    a[i] = a[j]
    a[j] = held
    i = i - 1
  end
  return a
end

def run(count)
  first = shuffled(count, 31)
  second = shuffled(count, 37)
  m = map_new()
  i = 0
  while i < count
    m[first[i]] = i
    i = i + 1
  end
  sum = 0
  round = 0
  while round < 80
    i = 0
    while i < count
      sum = (sum * 3 + m[second[i]]) % 1000003
      i = i + 1
    end
    round = round + 1
  end
  return sum
end

puts(run(n))
