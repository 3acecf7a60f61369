n = 300000
# Arrays of some dozen elements, written as a literal or grown by pushing; the last hundred are kept.
def row(first)
  return [first, first + 1, first + 2, first + 3, first + 4, first + 5, first + 6, first + 7, first + 8, first + 9]
end

def grown(size, first)
  a = []
  i = 0
  while i < size
    array_push(a, first + i)
    i = i + 1
  end
  return a
end

def run(count)
  kept = array_new(100, [0])
  total = 0
  i = 0
  while i < count
    slot = i % 100
    old = kept[slot]
    total = (total + old[0] + old[len(old) - 1]) % 1000003
    kept[slot] = grown(i * 7 % 60 + 10, i)
    total = total + row(i)[i % 10]
    i = i + 1
  end
  return total
end

puts(run(n))
