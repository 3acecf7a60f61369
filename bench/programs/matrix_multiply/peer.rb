n = 320
# Product of two square matrices held as arrays of rows.
def fill(size, seed)
  m = []
  i = 0
  while i < size
    row = []
    j = 0
    while j < size
      seed = seed * 16807 % 2147483647
      row << seed % 100
      j += 1
    end
    m << row
    i += 1
  end
  m
end

def multiply(a, b, size)
  c = []
  i = 0
  while i < size
    ai = a[i]
    ci = []
    j = 0
    while j < size
      sum = 0
      k = 0
      while k < size
        sum += ai[k] * b[k][j]
        k += 1
      end
      ci << sum
      j += 1
    end
    c << ci
    i += 1
  end
  c
end

def run(size)
  c = multiply(fill(size, 7), fill(size, 11), size)
  sum = 0
  i = 0
  while i < size
    j = 0
    while j < size
      sum = (sum * 7 + c[i][j]) % 1000000007
      j += 1
    end
    i += 1
  end
  sum
end

puts run(n)
