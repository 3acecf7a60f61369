n = 500
# Largest singular value of an infinite matrix: a small float function inside two nested loops.
import math


def element(i, j):
    return 1.0 / ((i + j) * (i + j + 1) / 2 + i + 1)


def multiply(v, size):
    out = []
    for i in range(size):
        total = 0.0
        for j in range(size):
            total += element(i, j) * v[j]
        out.append(total)
    return out


def multiply_transposed(v, size):
    out = []
    for i in range(size):
        total = 0.0
        for j in range(size):
            total += element(j, i) * v[j]
        out.append(total)
    return out


def run(size):
    u = [1.0] * size
    v = u
    for _ in range(10):
        v = multiply_transposed(multiply(u, size), size)
        u = multiply_transposed(multiply(v, size), size)
    uv = 0.0
    vv = 0.0
    for i in range(size):
        uv += u[i] * v[i]
        vv += v[i] * v[i]
    return math.floor(math.sqrt(uv / vv) * 1000000000)


print(run(n))
