n = 50000
# Breadth-first search over a graph held as an array of arrays of neighbours, from several starts.


def make_graph(size):
    graph = [[(i + 1) % size] for i in range(size)]
    seed = 11
    for _ in range(size * 3):
        seed = seed * 16807 % 2147483647
        start = seed % size
        seed = seed * 16807 % 2147483647
        graph[start].append(seed % size)
    return graph


def search(graph, start):
    distances = [-1] * len(graph)
    distances[start] = 0
    queue = [start]
    head = 0
    total = 0
    while head < len(queue):
        node = queue[head]
        head += 1
        distance = distances[node]
        total += distance
        for following in graph[node]:
            if distances[following] < 0:
                distances[following] = distance + 1
                queue.append(following)
    return total


def run(size):
    graph = make_graph(size)
    total = 0
    for i in range(10):
        total += search(graph, i)
    return total


print(run(n))
