n = 4000000
# Sieve of Eratosthenes: loads and stores of array elements with a stride.


def run(limit):
    composite = [False] * (limit + 1)
    count = 0
    total = 0
    for i in range(2, limit + 1):
        if not composite[i]:
            count += 1
            total += i
            for j in range(i * i, limit + 1, i):
                composite[j] = True
    print(count)
    print(total)


run(n)
