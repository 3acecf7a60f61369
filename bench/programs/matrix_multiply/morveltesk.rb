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
      array_push(row, seed % 100)
      j = j + 1
    end
    array_push(m, row)
    i = i + 1
  end
  return m
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
        sum = sum + ai[k] * b[k][j]
        k = k + 1
      end
      array_push(ci, sum)
      j = j + 1
    end
    array_push(c, ci)
    i = i + 1
  end
  return c
end

def run(size)
  c = multiply(fill(size, 7), fill(size, 11), size)
  sum = 0
  i = 0
  while i < size
    j = 0
    while j < size
      sum = (sum * 7 + c[i][j]) % 1000000007
      j = j + 1
    end
    i = i + 1
  end
  return sum
end

puts(run(n))
