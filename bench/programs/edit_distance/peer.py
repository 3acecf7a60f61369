n = 2500
# Edit distance of two texts by dynamic programming over two rows.


def letters(size, seed):
    alphabet = "abcd"
    text = ""
    for _ in range(size):
        seed = seed * 16807 % 2147483647
        text += alphabet[seed % 4]
    return text


def distance(a, b):
    width = len(b)
    previous = list(range(width + 1))
    for i in range(len(a)):
        c = a[i]
        current = [i + 1]
        left = i + 1
        for j in range(width):
            best = previous[j]
            if c != b[j]:
                best += 1
            if left + 1 < best:
                best = left + 1
            if previous[j + 1] + 1 < best:
                best = previous[j + 1] + 1
            current.append(best)
            left = best
        previous = current
    return previous[width]


print(distance(letters(n, 1), letters(n, 2)))
