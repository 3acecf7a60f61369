n = 9000000
# Short substrings cut from a text and compared.


def run(count):
    text = "the rain in spain stays mainly in the plain"
    size = len(text)
    hits = 0
    total = 0
    for i in range(count):
        at = i % size
        part = text[at:at + 3]
        if part == "ain":
            hits += 1
        total += len(part)
    print(hits)
    print(total)


run(n)
