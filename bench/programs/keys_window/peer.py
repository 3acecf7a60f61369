n = 40000
# A map as a table of open orders: it grows and shrinks in waves, and its keys only ever rise.


def run(rounds):
    m = {}
    first = 0
    last = 0
    total = 0
    for turn in range(rounds):
        limit = last + 100 + turn * 37 % 200
        while last < limit:
            m[last] = last % 1009
            last += 1
        while last - first > 50:
            total = (total * 3 + m[first]) % 1000003
            del m[first]
            first += 1
    print(len(m))
    print(total)


run(n)
