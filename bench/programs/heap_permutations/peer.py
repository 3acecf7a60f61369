n = 10
# Heap's algorithm: every permutation by one swap from the last, the array passed to small functions.


def swap(a, i, j):
    a[i], a[j] = a[j], a[i]


def visit(a, totals):
    totals[0] += 1
    totals[1] = (totals[1] * 31 + a[0] * 7 + a[1]) % 1000003


def permute(size, a, totals):
    if size == 1:
        visit(a, totals)
        return
    for i in range(1, size):
        permute(size - 1, a, totals)
        if size % 2 == 0:
            swap(a, i - 1, size - 1)
        else:
            swap(a, 0, size - 1)
    permute(size - 1, a, totals)


totals = [0, 0]
permute(n, list(range(n)), totals)
print(totals[0])
print(totals[1])
