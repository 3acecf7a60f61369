n = 300000
# Arrays of some dozen elements, written as a literal or grown by pushing; the last hundred are kept.
def row(first)
  [first, first + 1, first + 2, first + 3, first + 4, first + 5, first + 6, first + 7, first + 8, first + 9]
end

def grown(size, first)
  a = []
  i = 0
  while i < size
    a << first + i
    i += 1
  end
  a
end

def run(count)
  kept = Array.new(100, [0])
  total = 0
  i = 0
  while i < count
    slot = i % 100
    old = kept[slot]
    total = (total + old[0] + old[-1]) % 1000003
    kept[slot] = grown(i * 7 % 60 + 10, i)
    total += row(i)[i % 10]
    i += 1
  end
  total
end

puts run(n)
