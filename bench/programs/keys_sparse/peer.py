n = 100000
# A map with random keys below 2 to the power 31: stores, look-ups that hit and look-ups that miss.


def run(count):
    m = {}
    seed = 41
    for i in range(count):
        seed = seed * 16807 % 2147483647
        m[seed] = i
    found = 0
    total = 0
    for _ in range(20):
        seed = 41
        for _ in range(count * 2):
            seed = seed * 16807 % 2147483647
            value = m.get(seed)
            if value is not None:
                found += 1
                total = (total + value) % 1000003
    print(found)
    print(total)


run(n)
