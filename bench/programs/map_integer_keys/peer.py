n = 480000
# A map with scattered integer keys: stores, look-ups that hit and look-ups that miss.


def run(count):
    m = {}
    for i in range(count):
        m[i * 7919 % 1000003] = i
    found = 0
    total = 0
    for _ in range(8):
        for i in range(count * 2):
            v = m.get(i * 7919 % 1000003)
            if v is not None:
                found += 1
                total = (total + v) % 1000003
    print(len(m))
    print(found)
    print(total)


run(n)
