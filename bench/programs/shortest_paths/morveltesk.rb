n = 280
# The shortest paths between all pairs of nodes: a matrix as an array of rows, its elements reached by two indices.
def make_matrix(size)
  d = []
  seed = 53
  i = 0
  while i < size
    row = []
    j = 0
    while j < size
      seed = seed * 16807 % 2147483647
      if i == j
        array_push(row, 0)
      else
        array_push(row, seed % 1000 + 1)
      end
      j = j + 1
    end
    array_push(d, row)
    i = i + 1
  end
  return d
end

def shorten(d, size)
  k = 0
  while k < size
    i = 0
    while i < size
      row = d[i]
      j = 0
      while j < size
        via = d[i][k] + d[k][j]
        if via < d[i][j]
          row[j] = via
        end
        j = j + 1
      end
      i = i + 1
    end
    k = k + 1
  end
end

def run(size)
  d = make_matrix(size)
  shorten(d, size)
  sum = 0
  i = 0
  while i < size
    j = 0
    while j < size
      sum = (sum * 3 + d[i][j]) % 1000003
      j = j + 1
    end
    i = i + 1
  end
  return sum
end

puts(run(n))
