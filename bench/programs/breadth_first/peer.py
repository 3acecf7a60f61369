n = 1400
# Breadth-first search through a maze on a square grid: an array as queue, an array of distances.


def maze(size):
    walls = []
    seed = 3
    for _ in range(size * size):
        seed = seed * 16807 % 2147483647
        walls.append(seed % 4 == 0)
    walls[0] = False
    return walls


def visit(cell, distance, walls, distances, queue):
    if not walls[cell]:
        if distances[cell] < 0:
            distances[cell] = distance
            queue.append(cell)


def run(size):
    walls = maze(size)
    distances = [-1] * (size * size)
    distances[0] = 0
    queue = [0]
    head = 0
    total = 0
    while head < len(queue):
        cell = queue[head]
        head += 1
        distance = distances[cell] + 1
        total = (total + distance) % 1000003
        x = cell % size
        if x > 0:
            visit(cell - 1, distance, walls, distances, queue)
        if x < size - 1:
            visit(cell + 1, distance, walls, distances, queue)
        if cell >= size:
            visit(cell - size, distance, walls, distances, queue)
        if cell < size * (size - 1):
            visit(cell + size, distance, walls, distances, queue)
    print(len(queue))
    print(total)


run(n)
