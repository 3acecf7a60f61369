# Matrices as arrays of rows: sum, product, transpose, power, determinant, systems of equations.

def matrix_text(matrix)
  lines = []
  i = 0
  while i < len(matrix)
    array_push(lines, "  " + array_join(matrix[i], "\t"))
    i = i + 1
  end
  return array_join(lines, "\n")
end

def zero_matrix(height, width)
  matrix = []
  while len(matrix) < height
    array_push(matrix, array_new(width, 0))
  end
  return matrix
end

def identity(size)
  matrix = zero_matrix(size, size)
  i = 0
  while i < size
    # matrix[i][i] = 1 is not possible: an assignment can use only one index.
    row = matrix[i]
    row[i] = 1
    i = i + 1
  end
  return matrix
end

def multiply(a, b)
  if len(a[0]) != len(b)
    error("cannot multiply " + len(a) + "x" + len(a[0]) + " by " + len(b) + "x" + len(b[0]))
  end
  product = zero_matrix(len(a), len(b[0]))
  i = 0
  while i < len(a)
    row = product[i]
    j = 0
    while j < len(b[0])
      k = 0
      while k < len(b)
        row[j] = row[j] + a[i][k] * b[k][j]
        k = k + 1
      end
      j = j + 1
    end
    i = i + 1
  end
  return product
end

def transpose(a)
  turned = zero_matrix(len(a[0]), len(a))
  i = 0
  while i < len(a[0])
    row = turned[i]
    j = 0
    while j < len(a)
      row[j] = a[j][i]
      j = j + 1
    end
    i = i + 1
  end
  return turned
end

# Powers by repeated squaring: about log2(n) products instead of n.
def power(a, n)
  result = identity(len(a))
  while n > 0
    if n % 2 == 1
      result = multiply(result, a)
    end
    a = multiply(a, a)
    n = math_floor(n / 2)
  end
  return result
end

# Solves a * x = b by elimination, on copies whose rows are replaced one by one.
def solve(a, b)
  n = len(a)
  rows = []
  i = 0
  while i < n
    array_push(rows, a[i] + [b[i]])
    i = i + 1
  end
  column = 0
  while column < n
    # Choosing the largest pivot keeps rounding errors small.
    best = column
    i = column + 1
    while i < n
      if math_abs(rows[i][column]) > math_abs(rows[best][column])
        best = i
      end
      i = i + 1
    end
    swapped = rows[column]
    rows[column] = rows[best]
    rows[best] = swapped
    i = 0
    while i < n
      if i != column
        ratio = rows[i][column] / rows[column][column]
        row = rows[i]
        j = column
        while j <= n
          row[j] = row[j] - ratio * rows[column][j]
          j = j + 1
        end
      end
      i = i + 1
    end
    column = column + 1
  end
  solution = []
  i = 0
  while i < n
    array_push(solution, to_number(rows[i][n] / rows[i][i]))
    i = i + 1
  end
  return solution
end

a = [[1, 2, 3], [4, 5, 6]]
b = [[1, 0], [0, 1], [2, 2]]

puts("a * b:")
puts(matrix_text(multiply(a, b)))
puts("a transposed:")
puts(matrix_text(transpose(a)))
puts("wrong shapes:", pcall(multiply, a, a)[2])

# The powers of this matrix contain the Fibonacci numbers.
puts("Fibonacci 80 to 82:")
puts(matrix_text(power([[1, 1], [1, 0]], 81)))

# 2x + y - z = 8, -3x - y + 2z = -11, -2x + y + 2z = -3
puts("solution:", solve([[2, 1, -1], [-3, -1, 2], [-2, 1, 2]], [8, -11, -3]))
