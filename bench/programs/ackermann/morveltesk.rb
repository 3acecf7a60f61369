n = 250
# Ackermann's function: recursion some hundred calls deep with little work between the calls.
def ackermann(m, k)
  if m == 0
    return k + 1
  end
  if k == 0
    return ackermann(m - 1, 1)
  end
  return ackermann(m - 1, ackermann(m, k - 1))
end

def run(rounds)
  total = 0
  i = 0
  while i < rounds
    total = total + ackermann(3, 4 + i % 3)
    i = i + 1
  end
  return total
end

puts(run(n))
