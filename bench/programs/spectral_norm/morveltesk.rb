n = 500
# Largest singular value of an infinite matrix: a small float function inside two nested loops.
def element(i, j)
  return 1.0 / ((i + j) * (i + j + 1) / 2 + i + 1)
end

def multiply(v, size)
  out = []
  i = 0
  while i < size
    sum = 0.0
    j = 0
    while j < size
      sum = sum + element(i, j) * v[j]
      j = j + 1
    end
    array_push(out, sum)
    i = i + 1
  end
  return out
end

def multiply_transposed(v, size)
  out = []
  i = 0
  while i < size
    sum = 0.0
    j = 0
    while j < size
      sum = sum + element(j, i) * v[j]
      j = j + 1
    end
    array_push(out, sum)
    i = i + 1
  end
  return out
end

def run(size)
  u = array_new(size, 1.0)
  v = u
  round = 0
  while round < 10
    v = multiply_transposed(multiply(u, size), size)
    u = multiply_transposed(multiply(v, size), size)
    round = round + 1
  end
  uv = 0.0
  vv = 0.0
  i = 0
  while i < size
    uv = uv + u[i] * v[i]
    vv = vv + v[i] * v[i]
    i = i + 1
  end
  return math_floor(math_sqrt(uv / vv) * 1000000000)
end

puts(run(n))
