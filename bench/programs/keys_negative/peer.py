n = 150
# A map of the cells around an origin, its keys negative and positive: four neighbours of every cell summed.


def fill(m, size):
    for x in range(-size, size + 1):
        for y in range(-size, size + 1):
            m[x * 1000 + y] = (x * x + y * y) % 97


def around(m, size):
    total = 0
    for x in range(1 - size, size):
        for y in range(1 - size, size):
            at = x * 1000 + y
            total = (total * 3 + m[at - 1000] + m[at - 1] + m[at + 1] + m[at + 1000]) % 1000003
    return total


def run(size):
    m = {}
    fill(m, size)
    total = 0
    for turn in range(50):
        total += around(m, size - turn % 5)
    return total


print(run(n))
