n = 40000
# A map as a table of open orders: it grows and shrinks in waves, and its keys only ever rise.
def run(rounds)
  m = {}
  first = 0
  last = 0
  sum = 0
  round = 0
  while round < rounds
    limit = last + 100 + round * 37 % 200
    while last < limit
      m[last] = last % 1009
      last += 1
    end
    while last - first > 50
      sum = (sum * 3 + m[first]) % 1000003
      m.delete(first)
      first += 1
    end
    round += 1
  end
  puts m.size
  puts sum
end

run(n)
