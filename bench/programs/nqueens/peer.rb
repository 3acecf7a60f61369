n = 12
# All placements of n queens: backtracking over arrays of flags.
def place(row, size, columns, rising, falling)
  if row == size
    return 1
  end
  count = 0
  col = 0
  while col < size
    if !columns[col]
      if !rising[row + col]
        if !falling[row - col + size]
          columns[col] = true
          rising[row + col] = true
          falling[row - col + size] = true
          count += place(row + 1, size, columns, rising, falling)
          columns[col] = false
          rising[row + col] = false
          falling[row - col + size] = false
        end
      end
    end
    col += 1
  end
  count
end

puts place(0, n, Array.new(n, false), Array.new(2 * n, false), Array.new(2 * n + 1, false))
