n = 1400000
# Protected calls that fail: an error raised two calls down, its message used by the caller.
def check(x)
  limit = 10
  if x >= limit
    error("value out of range")
  end
  return x
end

def work(x)
  y = check(x + 10)
  return y * 2
end

def guarded(x)
  if x >= 0
    error("refused")
  end
  return x
end

def run(count)
  total = 0
  i = 0
  while i < count
    outcome = pcall(work, i)
    if !outcome[1]
      total = total + len(outcome[2])
    end
    outcome = pcall(guarded, i)
    if !outcome[0]
      total = total + len(outcome[1])
    end
    i = i + 1
  end
  return total
end

puts(run(n))
