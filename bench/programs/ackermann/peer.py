n = 250
# Ackermann's function: recursion some hundred calls deep with little work between the calls.


def ackermann(m, k):
    if m == 0:
        return k + 1
    if k == 0:
        return ackermann(m - 1, 1)
    return ackermann(m - 1, ackermann(m, k - 1))


def run(rounds):
    total = 0
    for i in range(rounds):
        total += ackermann(3, 4 + i % 3)
    return total


print(run(n))
