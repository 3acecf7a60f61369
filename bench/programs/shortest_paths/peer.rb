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
        row << 0
      else
        row << seed % 1000 + 1
      end
      j += 1
    end
    d << row
    i += 1
  end
  d
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
        j += 1
      end
      i += 1
    end
    k += 1
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
      j += 1
    end
    i += 1
  end
  sum
end

puts run(n)
