n = 8000000
# Protected calls that succeed.
def work(x, i)
  y = x * 3 + i
  if y > 1000000
    y = y % 1000003
  end
  return y
end

def run(count)
  total = 1
  i = 0
  while i < count
    outcome = pcall(work, total, i)
    if outcome[0]
      total = outcome[1]
    else
      total = 0
    end
    i = i + 1
  end
  return total
end

puts(run(n))
