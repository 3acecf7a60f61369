n = 1000
# Escape times over a grid of points: float arithmetic on locals in a tight loop.


def escape(cr, ci, limit):
    zr = 0.0
    zi = 0.0
    for k in range(limit):
        zr2 = zr * zr
        zi2 = zi * zi
        if zr2 + zi2 > 4.0:
            return k
        zi = 2.0 * zr * zi + ci
        zr = zr2 - zi2 + cr
    return limit


def run(size):
    total = 0
    for y in range(size):
        ci = 2.0 * y / size - 1.0
        for x in range(size):
            total += escape(3.0 * x / size - 2.0, ci, 50)
    return total


print(run(n))
