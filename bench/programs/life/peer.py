n = 1100
# The game of life on a torus: a grid of rows, eight neighbours a cell.


def start(size):
    grid = []
    seed = 5
    for _ in range(size):
        row = []
        for _ in range(size):
            seed = seed * 16807 % 2147483647
            if seed % 3 == 0:
                row.append(1)
            else:
                row.append(0)
        grid.append(row)
    return grid


def next_generation(grid, size):
    fresh = []
    for y in range(size):
        above = grid[(y + size - 1) % size]
        here = grid[y]
        below = grid[(y + 1) % size]
        row = []
        for x in range(size):
            l = (x + size - 1) % size
            r = (x + 1) % size
            around = above[l] + above[x] + above[r] + here[l] + here[r] + below[l] + below[x] + below[r]
            alive = 0
            if around == 3:
                alive = 1
            elif around == 2:
                alive = here[x]
            row.append(alive)
        fresh.append(row)
    return fresh


def run(generations):
    size = 64
    grid = start(size)
    for _ in range(generations):
        grid = next_generation(grid, size)
    total = 0
    for y in range(size):
        for x in range(size):
            total = (total * 3 + grid[y][x]) % 1000003
    return total


print(run(n))
