n = 150000
# A map from the numbers 1 to n in their order: filled, updated and read.


def run(count):
    m = {}
    for i in range(1, count + 1):
        m[i] = i * i % 1009
    for turn in range(200):
        for i in range(1, count + 1):
            m[i] += turn
    total = 0
    for i in range(1, count + 1):
        total = (total * 3 + m[i]) % 1000003
    return total


print(run(n))
