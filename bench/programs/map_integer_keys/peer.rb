n = 480000
# A map with scattered integer keys: stores, look-ups that hit and look-ups that miss.
def run(count)
  m = {}
  i = 0
  while i < count
    m[i * 7919 % 1000003] = i
    i += 1
  end
  found = 0
  sum = 0
  pass = 0
  while pass < 8
    i = 0
    while i < count * 2
      v = m[i * 7919 % 1000003]
      if v != nil
        found += 1
        sum = (sum + v) % 1000003
      end
      i += 1
    end
    pass += 1
  end
  puts m.length
  puts found
  puts sum
end

run(n)
