n = 300000
# Large arrays made at once and grown by pushing, each dropped when the next one is there.
def filled(size, seed)
  a = Array.new(size, 0)
  i = 0
  while i < size
    a[i] = i + seed
    i += 1
  end
  a
end

def grown(size, seed)
  a = []
  i = 0
  while i < size
    a << i * seed
    i += 1
  end
  a
end

def run(size)
  total = 0
  round = 1
  while round <= 40
    a = filled(size + round, round)
    b = grown(size - round, round)
    total = (total + a[size - 1] + b[size - 41] + a.length + b.length) % 1000003
    round += 1
  end
  total
end

puts run(n)
