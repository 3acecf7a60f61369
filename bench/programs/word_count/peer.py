n = 1500000
# Word frequencies: a text split into words, a map from word to count, keys in sorted order.


def make_text(words):
    parts = []
    seed = 99
    for _ in range(words):
        seed = seed * 16807 % 2147483647
        parts.append("w" + str(seed % 997))
    return " ".join(parts)


def run(words):
    word_list = make_text(words).split(" ")
    counts = {}
    for i in range(words):
        word = word_list[i]
        seen = counts.get(word)
        if seen is None:
            counts[word] = 1
        else:
            counts[word] = seen + 1
    names = sorted(counts)
    total = 0
    for name in names:
        total = (total * 31 + counts[name] * len(name)) % 1000003
    print(len(names))
    print(total)


run(n)
