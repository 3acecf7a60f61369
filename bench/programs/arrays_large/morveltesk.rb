n = 300000
# Large arrays made at once and grown by pushing, each dropped when the next one is there.
def filled(size, seed)
  a = array_new(size, 0)
  i = 0
  while i < size
    a[i] = i + seed
    i = i + 1
  end
  return a
end

def grown(size, seed)
  a = []
  i = 0
  while i < size
    array_push(a, i * seed)
    i = i + 1
  end
  return a
end

def run(size)
  total = 0
  round = 1
  while round <= 40
    a = filled(size + round, round)
    b = grown(size - round, round)
    total = (total + a[size - 1] + b[size - 41] + len(a) + len(b)) % 1000003
    round = round + 1
  end
  return total
end

puts(run(n))
