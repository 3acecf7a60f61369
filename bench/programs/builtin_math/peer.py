n = 6000000
# Calls of floor, square root, minimum and maximum in a loop.
from math import floor, sqrt


def run(count):
    total = 0
    for i in range(count):
        r = sqrt(i)
        k = floor(r * 10)
        total = (total + min(k, 5000) + max(i % 10, 5)) % 1000003
    return total


print(run(n))
