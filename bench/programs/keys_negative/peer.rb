n = 150
# A map of the cells around an origin, its keys negative and positive: four neighbours of every cell summed.
def fill(m, size)
  x = -size
  while x <= size
    y = -size
    while y <= size
      m[x * 1000 + y] = (x * x + y * y) % 97
      y += 1
    end
    x += 1
  end
end

def around(m, size)
  sum = 0
  x = 1 - size
  while x < size
    y = 1 - size
    while y < size
      at = x * 1000 + y
      sum = (sum * 3 + m[at - 1000] + m[at - 1] + m[at + 1] + m[at + 1000]) % 1000003
      y += 1
    end
    x += 1
  end
  sum
end

def run(size)
  m = {}
  fill(m, size)
  total = 0
  round = 0
  while round < 50
    total += around(m, size - round % 5)
    round += 1
  end
  total
end

puts run(n)
