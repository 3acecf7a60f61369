n = 6000000
# Conditions made of several comparisons: points in regions, leap years, kinds of triangles.


def region(x, y):
    if x >= 20 and x < 60 and y >= 30 and y < 80:
        return 1
    if x < 5 or x > 95 or y < 5 or y > 95:
        return 2
    if (x == y or x + y == 100) and not (x > 40 and x < 70):
        return 3
    return 4


def triangle(a, b, c):
    if a + b <= c or b + c <= a or a + c <= b:
        return 0
    elif a == b and b == c:
        return 3
    elif a == b or b == c or a == c:
        return 2
    return 1


def run(count):
    total = 0
    leap = 0
    for i in range(count):
        x = i % 101
        y = i % 97
        total += region(x, y) + triangle(x, y, i % 89)
        if i % 4 == 0 and (i % 100 != 0 or i % 400 == 0):
            leap += 1
    print(total)
    print(leap)


run(n)
