n = 12
# All placements of n queens: backtracking over arrays of flags.


def place(row, size, columns, rising, falling):
    if row == size:
        return 1
    count = 0
    for col in range(size):
        if not columns[col]:
            if not rising[row + col]:
                if not falling[row - col + size]:
                    columns[col] = True
                    rising[row + col] = True
                    falling[row - col + size] = True
                    count += place(row + 1, size, columns, rising, falling)
                    columns[col] = False
                    rising[row + col] = False
                    falling[row - col + size] = False
    return count


print(place(0, n, [False] * n, [False] * (2 * n), [False] * (2 * n + 1)))
