n = 900000
# Quicksort written in the language: element loads, comparisons and swaps, moderate recursion.


def sort(a, low, high):
    i = low
    j = high
    pivot = a[(low + high) // 2]
    while i <= j:
        while a[i] < pivot:
            i += 1
        while pivot < a[j]:
            j -= 1
        if i <= j:
            a[i], a[j] = a[j], a[i]
            i += 1
            j -= 1
    if low < j:
        sort(a, low, j)
    if i < high:
        sort(a, i, high)


def run(count):
    a = []
    seed = 42
    for _ in range(count):
        seed = seed * 16807 % 2147483647
        a.append(seed)
    sort(a, 0, count - 1)
    total = 0
    for i in range(count):
        total = (total * 3 + a[i]) % 1000000007
    return total


print(run(n))
