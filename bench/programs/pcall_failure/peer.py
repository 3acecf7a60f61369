n = 1400000
# Protected calls that fail: an error raised two calls down, its message used by the caller.


def check(x):
    limit = 10
    if x >= limit:
        raise ValueError("value out of range")
    return x


def work(x):
    y = check(x + 10)
    return y * 2


def guarded(x):
    if x >= 0:
        raise ValueError("refused")
    return x


def run(count):
    total = 0
    for i in range(count):
        try:
            work(i)
        except ValueError as e:
            total += len(str(e))
        try:
            guarded(i)
        except ValueError as e:
            total += len(str(e))
    return total


print(run(n))
