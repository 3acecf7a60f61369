n = 400
# The game of life on a board with a margin of dead cells: cells reached by two indices, `and` and `or`.


def make_board(size):
    return [[0] * (size + 2) for _ in range(size + 2)]


def scatter(board, size):
    seed = 5
    for y in range(1, size + 1):
        row = board[y]
        for x in range(1, size + 1):
            seed = seed * 16807 % 2147483647
            if seed % 3 == 0:
                row[x] = 1


def neighbours(board, x, y):
    count = 0
    for dy in range(-1, 2):
        for dx in range(-1, 2):
            if (dx != 0 or dy != 0) and board[y + dy][x + dx] == 1:
                count += 1
    return count


def next_generation(board, size):
    fresh = make_board(size)
    for y in range(1, size + 1):
        row = fresh[y]
        for x in range(1, size + 1):
            count = neighbours(board, x, y)
            if count == 3 or (count == 2 and board[y][x] == 1):
                row[x] = 1
    return fresh


def run(generations):
    size = 64
    board = make_board(size)
    scatter(board, size)
    for _ in range(generations):
        board = next_generation(board, size)
    total = 0
    for y in range(1, size + 1):
        for x in range(1, size + 1):
            total = (total * 3 + board[y][x]) % 1000003
    return total


print(run(n))
