n = 130
# A text scanned by index: one-character strings fetched and compared.


def scan(text):
    vowels = 0
    words = 0
    for i in range(len(text)):
        c = text[i]
        if c == " ":
            words += 1
        elif c == "e":
            vowels += 1
        elif c == "a":
            vowels += 1
    return words * 10 + vowels


def run(rounds):
    text = "the quick brown fox jumps over a lazy dog and eats an apple " * 1500
    total = 0
    for _ in range(rounds):
        total += scan(text)
    return total


print(run(n))
