n = 400000
# An array shuffled by random swaps, then put in order by heap sort.


def shuffle(a):
    seed = 29
    for i in range(len(a) - 1, 0, -1):
        seed = seed * 16807 % 2147483647
        j = seed % (i + 1)
        a[i], a[j] = a[j], a[i]


def sift_down(a, root, size):
    child = 2 * root + 1
    while child < size:
        if child + 1 < size and a[child] < a[child + 1]:
            child += 1
        if a[root] >= a[child]:
            return
        a[root], a[child] = a[child], a[root]
        root = child
        child = 2 * root + 1


def sort(a):
    size = len(a)
    for root in range(size // 2 - 1, -1, -1):
        sift_down(a, root, size)
    for last in range(size - 1, 0, -1):
        a[0], a[last] = a[last], a[0]
        sift_down(a, 0, last)


def checksum(a):
    total = 0
    for value in a:
        total = (total * 31 + value) % 1000003
    return total


a = list(range(n))
shuffle(a)
print(checksum(a))
sort(a)
print(checksum(a))
