n = 200000
# A binary search tree of nodes [key, left, right]: random keys put in, looked up and summed in order.


def insert(root, key):
    node = root
    while True:
        side = 1
        if key == node[0]:
            return False
        elif key > node[0]:
            side = 2
        child = node[side]
        if child is None:
            node[side] = [key, None, None]
            return True
        node = child


def contains(node, key):
    while node is not None:
        if key == node[0]:
            return True
        elif key < node[0]:
            node = node[1]
        else:
            node = node[2]
    return False


def checksum(node, total):
    if node is None:
        return total
    total = checksum(node[1], total)
    return checksum(node[2], (total * 3 + node[0]) % 1000003)


def run(count):
    limit = count * 4
    root = [count * 2, None, None]
    size = 1
    seed = 47
    for _ in range(count):
        seed = seed * 16807 % 2147483647
        if insert(root, seed % limit):
            size += 1
    found = 0
    for i in range(0, limit, 3):
        if contains(root, i):
            found += 1
    print(size)
    print(found)
    print(checksum(root, 0))


run(n)
