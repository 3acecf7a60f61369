n = 1000000
# Lines made by the format function from integers, strings and floats.


def run(count):
    names = ["anna", "bert", "carol", "dan"]
    total = 0
    last = ""
    for i in range(count):
        last = "%s has %d of %d items at %g" % (names[i % 4], i % 1000, count, i % 8 * 0.5)
        total += len(last)
    print(total)
    print(last)


run(n)
