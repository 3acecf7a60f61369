n = 11000000
# Functions looked up by name in a map and called.


def add(x, i):
    return x + i


def scale(x, i):
    return x * 3 + i


def mix(x, i):
    y = x - i
    if y < 0:
        y = -y
    return y


def run(count):
    actions = {}
    actions["add"] = add
    actions["scale"] = scale
    actions["mix"] = mix
    order = ["add", "scale", "mix", "add"]
    total = 0
    for i in range(count):
        total = actions[order[i % 4]](total, i) % 100003
    return total


print(run(n))
