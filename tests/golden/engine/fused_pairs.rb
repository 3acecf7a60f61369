def counts(n, step)
  i = 0
  while i < n
    i = i + 1
  end
  while i < 100
    i = i + 1
  end
  while i <= n
    i = i + 1
  end
  while i <= 200
    i = i + 1
  end
  while i < n
    i = i + step
  end
  while i <= n
    i = i + step
  end
  return i
end
def neighbours(a, i, j)
  x = a[i + 1]
  y = a[i + j]
  z = a[i - 1]
  return x
end
def cells(board, x, y)
  a = board[y][x]
  b = board[y][0]
  c = board[y][x][0]
  return a
end
def moves(a, i, j)
  a[i] = a[j]
  sum = i + a[j]
  return sum
end
def products(a, b, sum)
  x = a * b + sum
  y = sum + a * b
  sum = sum + a * b
  return x
end
def divides(a)
  if a % 3 == 0
    return 1
  end
  return 0
end
def not_these(a, i, f)
  i = i + 1
  while f < i
    f = i
  end
  row = a[i]
  x = row[i]
  k = i + 1
  y = a[k]
  y = f(i)[i][i]
  p = i * f
  q = p + i
  return f(i)[i + 1]
end
