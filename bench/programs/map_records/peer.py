n = 90000
# Records held as maps with a few fixed names, read and updated in place.


def make(i):
    p = {}
    p["x"] = i
    p["y"] = i * 2
    p["speed"] = i % 7 + 1
    p["name"] = "p" + str(i)
    return p


def step(p):
    p["x"] += p["speed"]
    p["y"] -= p["speed"]
    if p["x"] > 500:
        p["x"] -= 500


def run(rounds):
    points = []
    for i in range(100):
        points.append(make(i))
    for _ in range(rounds):
        for i in range(100):
            step(points[i])
    total = 0
    for p in points:
        total += p["x"] * 3 + p["y"] + len(p["name"])
    return total


print(run(n))
