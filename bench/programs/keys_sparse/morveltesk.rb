n = 100000
# A map with random keys below 2 to the power 31: stores, look-ups that hit and look-ups that miss.
def run(count)
  m = map_new()
  seed = 41
  i = 0
  while i < count
    seed = seed * 16807 % 2147483647
    m[seed] = i
    i = i + 1
  end
  found = 0
  sum = 0
  round = 0
  while round < 20
    seed = 41
    i = 0
    while i < count * 2
      seed = seed * 16807 % 2147483647
      value = m[seed]
      if value != nil
        found = found + 1
        sum = (sum + value) % 1000003
      end
      i = i + 1
    end
    round = round + 1
  end
  puts(found)
  puts(sum)
end

run(n)
