n = 8000
# Bubble sort: neighbours compared and swapped.


def sort(a):
    for last in range(len(a) - 1, 0, -1):
        for i in range(last):
            if a[i] > a[i + 1]:
                a[i], a[i + 1] = a[i + 1], a[i]


def run(count):
    a = []
    seed = 23
    for _ in range(count):
        seed = seed * 16807 % 2147483647
        a.append(seed)
    sort(a)
    total = 0
    for value in a:
        total = (total * 3 + value) % 1000000007
    return total


print(run(n))
