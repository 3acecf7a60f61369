n = 30000
# Texts of about a kilobyte built by repeated append of short pieces.


def build(pieces, count):
    text = ""
    for i in range(count):
        text += pieces[i % 4]
    return text


def run(rounds):
    pieces = ["alpha ", "be ", "gamma-delta ", "x"]
    total = 0
    for i in range(rounds):
        text = build(pieces, 100 + i % 200)
        total += len(text)
        if text[i % 500] == "a":
            total += 1
    return total


print(run(n))
