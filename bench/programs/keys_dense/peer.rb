n = 150000
# A map from the numbers 1 to n in their order: filled, updated and read.
def run(count)
  m = {}
  i = 1
  while i <= count
    m[i] = i * i % 1009
    i += 1
  end
  round = 0
  while round < 200
    i = 1
    while i <= count
      m[i] += round
      i += 1
    end
    round += 1
  end
  sum = 0
  i = 1
  while i <= count
    sum = (sum * 3 + m[i]) % 1000003
    i += 1
  end
  sum
end

puts run(n)
