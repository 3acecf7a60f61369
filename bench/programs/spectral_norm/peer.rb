n = 500
# Largest singular value of an infinite matrix: a small float function inside two nested loops.
def element(i, j)
  1.0 / ((i + j) * (i + j + 1) / 2 + i + 1)
end

def multiply(v, size)
  out = []
  i = 0
  while i < size
    sum = 0.0
    j = 0
    while j < size
      sum += element(i, j) * v[j]
      j += 1
    end
    out << sum
    i += 1
  end
  out
end

def multiply_transposed(v, size)
  out = []
  i = 0
  while i < size
    sum = 0.0
    j = 0
    while j < size
      sum += element(j, i) * v[j]
      j += 1
    end
    out << sum
    i += 1
  end
  out
end

def run(size)
  u = Array.new(size, 1.0)
  v = u
  round = 0
  while round < 10
    v = multiply_transposed(multiply(u, size), size)
    u = multiply_transposed(multiply(v, size), size)
    round += 1
  end
  uv = 0.0
  vv = 0.0
  i = 0
  while i < size
    uv += u[i] * v[i]
    vv += v[i] * v[i]
    i += 1
  end
  (Math.sqrt(uv / vv) * 1000000000).floor
end

puts run(n)
