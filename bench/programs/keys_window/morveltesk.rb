n = 40000
# A map as a table of open orders: it grows and shrinks in waves, and its keys only ever rise.
def run(rounds)
  m = map_new()
  first = 0
  last = 0
  sum = 0
  round = 0
  while round < rounds
    limit = last + 100 + round * 37 % 200
    while last < limit
      m[last] = last % 1009
      last = last + 1
    end
    while last - first > 50
      sum = (sum * 3 + m[first]) % 1000003
      map_delete(m, first)
      first = first + 1
    end
    round = round + 1
  end
  puts(len(m))
  puts(sum)
end

run(n)
