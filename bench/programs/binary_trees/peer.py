n = 16
# Complete binary trees built, counted and dropped: many small arrays.


def build(depth):
    if depth == 0:
        return [None, None]
    return [build(depth - 1), build(depth - 1)]


def count(node):
    left = node[0]
    if left is None:
        return 1
    return 1 + count(left) + count(node[1])


def run(depth):
    kept = build(depth)
    total = 0
    for i in range(20):
        total += count(build(depth - i % 4))
    return total + count(kept)


print(run(n))
