n = 6000000
# Functions whose body is one expression, called in a loop.
def square(x)
  return x * x
end

def twice_plus(x, y)
  return x * 2 + y
end

def wrap(x)
  return x % 10007
end

def larger(x, y)
  return x > y
end

def run(count)
  total = 0
  i = 0
  while i < count
    total = wrap(twice_plus(total, square(i % 100)))
    if larger(total, 5000)
      total = total + 1
    end
    i = i + 1
  end
  return total
end

puts(run(n))
