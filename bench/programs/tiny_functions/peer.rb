n = 6000000
# Functions whose body is one expression, called in a loop.
def square(x)
  x * x
end

def twice_plus(x, y)
  x * 2 + y
end

def wrap(x)
  x % 10007
end

def larger(x, y)
  x > y
end

def run(count)
  total = 0
  i = 0
  while i < count
    total = wrap(twice_plus(total, square(i % 100)))
    if larger(total, 5000)
      total += 1
    end
    i += 1
  end
  total
end

puts run(n)
