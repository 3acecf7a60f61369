n = 7000000
# Functions that refuse bad arguments with an error before they return one expression.


def checked_triple(x):
    if x < 0:
        raise ValueError("negative value")
    return x * 3 + 1


def checked_rest(x, limit):
    if limit == 0:
        raise ValueError("no limit")
    return x % limit


def checked_step(x):
    if x > 1000000:
        raise ValueError("value too large")
    return x + 7


def run(count):
    total = 0
    for _ in range(count):
        total = checked_rest(checked_triple(total), 10007)
        total = checked_step(total)
    return total


print(run(n))
