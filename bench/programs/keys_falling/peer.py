n = 100000
# Maps filled from the largest number down to 1, and read in that order.


def run(count):
    total = 0
    for turn in range(50):
        m = {}
        for i in range(count, 0, -1):
            m[i] = i + turn
        for i in range(count, 0, -1):
            total = (total * 3 + m[i]) % 1000003
    return total


print(run(n))
