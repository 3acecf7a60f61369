n = 8000000
# Protected calls that succeed.
def work(x, i)
  y = x * 3 + i
  if y > 1000000
    y = y % 1000003
  end
  y
end

def run(count)
  total = 1
  i = 0
  while i < count
    begin
      total = work(total, i)
    rescue => e
      total = 0
    end
    i += 1
  end
  total
end

puts run(n)
