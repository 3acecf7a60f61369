n = 1400000
# Protected calls that fail: an error raised two calls down, its message used by the caller.
def check(x)
  limit = 10
  if x >= limit
    raise "value out of range"
  end
  x
end

def work(x)
  y = check(x + 10)
  y * 2
end

def guarded(x)
  if x >= 0
    raise "refused"
  end
  x
end

def run(count)
  total = 0
  i = 0
  while i < count
    begin
      work(i)
    rescue => e
      total += e.message.length
    end
    begin
      guarded(i)
    rescue => e
      total += e.message.length
    end
    i += 1
  end
  total
end

puts run(n)
