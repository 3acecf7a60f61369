n = 300000
# Large arrays made at once and grown by pushing, each dropped when the next one is there.


def filled(size, seed):
    a = [0] * size
    for i in range(size):
        a[i] = i + seed
    return a


def grown(size, seed):
    a = []
    for i in range(size):
        a.append(i * seed)
    return a


def run(size):
    total = 0
    for turn in range(1, 41):
        a = filled(size + turn, turn)
        b = grown(size - turn, turn)
        total = (total + a[size - 1] + b[size - 41] + len(a) + len(b)) % 1000003
    return total


print(run(n))
