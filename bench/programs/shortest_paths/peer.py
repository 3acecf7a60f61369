n = 280
# The shortest paths between all pairs of nodes: a matrix as an array of rows, its elements reached by two indices.


def make_matrix(size):
    d = []
    seed = 53
    for i in range(size):
        row = []
        for j in range(size):
            seed = seed * 16807 % 2147483647
            if i == j:
                row.append(0)
            else:
                row.append(seed % 1000 + 1)
        d.append(row)
    return d


def shorten(d, size):
    for k in range(size):
        for i in range(size):
            row = d[i]
            for j in range(size):
                via = d[i][k] + d[k][j]
                if via < d[i][j]:
                    row[j] = via


def run(size):
    d = make_matrix(size)
    shorten(d, size)
    total = 0
    for i in range(size):
        for j in range(size):
            total = (total * 3 + d[i][j]) % 1000003
    return total


print(run(n))
