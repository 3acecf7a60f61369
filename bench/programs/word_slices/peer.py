n = 700000
# Words cut out of a text at its blanks and counted in a map.


def make_text(words):
    parts = []
    seed = 59
    for _ in range(words):
        seed = seed * 16807 % 2147483647
        parts.append("word" + str(seed % 1009))
    return " ".join(parts) + " "


def count_words(text):
    counts = {}
    start = 0
    for i in range(len(text)):
        if text[i] == " ":
            word = text[start:i]
            counts[word] = counts.get(word, 0) + 1
            start = i + 1
    return counts


def run(words):
    counts = count_words(make_text(words))
    total = 0
    for i in range(1009):
        total = (total * 3 + counts.get("word" + str(i), 0)) % 1000003
    print(len(counts))
    print(total)


run(n)
