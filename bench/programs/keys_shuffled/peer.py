n = 150000
# A map from the numbers 1 to n, filled in one random order and read in another.


def shuffled(count, seed):
    a = list(range(1, count + 1))
    for i in range(count - 1, 0, -1):
        seed = seed * 16807 % 2147483647
        j = seed % (i + 1)
        a[i], a[j] = a[j], a[i]
    return a


def run(count):
    first = shuffled(count, 31)
    second = shuffled(count, 37)
    m = {}
    for i in range(count):
        m[first[i]] = i
    total = 0
    for _ in range(80):
        for i in range(count):
            total = (total * 3 + m[second[i]]) % 1000003
    return total


print(run(n))
