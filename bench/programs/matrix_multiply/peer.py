n = 320
# Product of two square matrices held as arrays of rows.


def fill(size, seed):
    m = []
    for _ in range(size):
        row = []
        for _ in range(size):
            seed = seed * 16807 % 2147483647
            row.append(seed % 100)
        m.append(row)
    return m


def multiply(a, b, size):
    c = []
    for i in range(size):
        ai = a[i]
        ci = []
        for j in range(size):
            total = 0
            for k in range(size):
                total += ai[k] * b[k][j]
            ci.append(total)
        c.append(ci)
    return c


def run(size):
    c = multiply(fill(size, 7), fill(size, 11), size)
    total = 0
    for i in range(size):
        for j in range(size):
            total = (total * 7 + c[i][j]) % 1000000007
    return total


print(run(n))
