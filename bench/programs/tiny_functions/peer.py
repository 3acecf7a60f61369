n = 6000000
# Functions whose body is one expression, called in a loop.


def square(x):
    return x * x


def twice_plus(x, y):
    return x * 2 + y


def wrap(x):
    return x % 10007


def larger(x, y):
    return x > y


def run(count):
    total = 0
    for i in range(count):
        total = wrap(twice_plus(total, square(i % 100)))
        if larger(total, 5000):
            total += 1
    return total


print(run(n))
