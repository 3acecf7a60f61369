n = 300000
# Arrays of some dozen elements, written as a literal or grown by pushing; the last hundred are kept.


def row(first):
    return [first, first + 1, first + 2, first + 3, first + 4, first + 5, first + 6, first + 7, first + 8, first + 9]


def grown(size, first):
    a = []
    for i in range(size):
        a.append(first + i)
    return a


def run(count):
    kept = [[0]] * 100
    total = 0
    for i in range(count):
        slot = i % 100
        old = kept[slot]
        total = (total + old[0] + old[-1]) % 1000003
        kept[slot] = grown(i * 7 % 60 + 10, i)
        total += row(i)[i % 10]
    return total


print(run(n))
