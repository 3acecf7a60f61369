n = 100000
# Maps filled from the largest number down to 1, and read in that order.
def run(count)
  sum = 0
  round = 0
  while round < 50
    m = {}
    i = count
    while i > 0
      m[i] = i + round
      i -= 1
    end
    i = count
    while i > 0
      sum = (sum * 3 + m[i]) % 1000003
      i -= 1
    end
    round += 1
  end
  sum
end

puts run(n)
