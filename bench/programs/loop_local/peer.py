n = 24000000
# A while loop over locals of a function: remainder, equality, branches, sums.


def run(limit):
    i = 0
    total = 0
    while i < limit:
        if i % 3 == 0:
            total += i
        elif i % 5 == 0:
            total -= 1
        else:
            total += 2
        i += 1
    return total


print(run(n))
