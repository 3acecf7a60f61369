n = 9
# Pancake flipping over all permutations: short runs of element swaps.


def fannkuch(size):
    start = list(range(size))
    work = [0] * size
    count = [0] * (size + 1)
    checksum = 0
    most = 0
    even = True
    r = size
    while True:
        while r > 1:
            count[r - 1] = r
            r -= 1
        for i in range(size):
            work[i] = start[i]
        flips = 0
        first = work[0]
        while first > 0:
            i = 0
            j = first
            while i < j:
                work[i], work[j] = work[j], work[i]
                i += 1
                j -= 1
            flips += 1
            first = work[0]
        if flips > most:
            most = flips
        if even:
            checksum += flips
        else:
            checksum -= flips
        even = not even
        advancing = True
        while advancing:
            if r == size:
                return checksum, most
            held = start[0]
            for i in range(r):
                start[i] = start[i + 1]
            start[r] = held
            count[r] -= 1
            if count[r] > 0:
                advancing = False
            else:
                r += 1


checksum, most = fannkuch(n)
print(checksum)
print(most)
