n = 8000000
# Protected calls that succeed.


def work(x, i):
    y = x * 3 + i
    if y > 1000000:
        y = y % 1000003
    return y


def run(count):
    total = 1
    for i in range(count):
        try:
            total = work(total, i)
        except ValueError:
            total = 0
    return total


print(run(n))
