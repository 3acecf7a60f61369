n = 500000
# A binary heap of pairs [priority, item] in an array: the first taken out, a later one put in.


def sift_up(heap, at):
    entry = heap[at]
    while at > 0:
        parent = (at - 1) // 2
        above = heap[parent]
        if above[0] <= entry[0]:
            heap[at] = entry
            return
        heap[at] = above
        at = parent
    heap[0] = entry


def sift_down(heap, entry):
    size = len(heap)
    at = 0
    child = 1
    while child < size:
        if child + 1 < size and heap[child + 1][0] < heap[child][0]:
            child += 1
        below = heap[child]
        if below[0] >= entry[0]:
            heap[at] = entry
            return
        heap[at] = below
        at = child
        child = 2 * at + 1
    heap[at] = entry


def push(heap, priority, item):
    heap.append([priority, item])
    sift_up(heap, len(heap) - 1)


def pop(heap):
    first = heap[0]
    last = heap.pop()
    if len(heap) > 0:
        sift_down(heap, last)
    return first


def run(events):
    heap = []
    seed = 43
    for i in range(2000):
        seed = seed * 16807 % 2147483647
        push(heap, seed % 100000, i)
    total = 0
    for i in range(2000, events):
        event = pop(heap)
        total = (total * 31 + event[0] + event[1]) % 1000003
        seed = seed * 16807 % 2147483647
        push(heap, event[0] + seed % 100000, i)
    while len(heap) > 0:
        total = (total * 31 + pop(heap)[1]) % 1000003
    return total


print(run(n))
