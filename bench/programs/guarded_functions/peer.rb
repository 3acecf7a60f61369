n = 7000000
# Functions that refuse bad arguments with an error before they return one expression.
def checked_triple(x)
  if x < 0
    raise "negative value"
  end
  x * 3 + 1
end

def checked_rest(x, limit)
  if limit == 0
    raise "no limit"
  end
  x % limit
end

def checked_step(x)
  if x > 1000000
    raise "value too large"
  end
  x + 7
end

def run(count)
  total = 0
  i = 0
  while i < count
    total = checked_rest(checked_triple(total), 10007)
    total = checked_step(total)
    i += 1
  end
  total
end

puts run(n)
