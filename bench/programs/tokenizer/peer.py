n = 4000
# A lexer's scan: every byte of a text compared with one-byte literals, names, numbers and quoted texts skipped.


def scan(text, counts):
    size = len(text)
    i = 0
    while i < size:
        c = text[i]
        if c == " " or c == "\n":
            i += 1
        elif (c >= "a" and c <= "z") or c == "_":
            counts[0] += 1
            while (c >= "a" and c <= "z") or c == "_":
                i += 1
                c = text[i]
        elif c >= "0" and c <= "9":
            counts[1] += 1
            while c >= "0" and c <= "9":
                i += 1
                c = text[i]
        elif c == "'":
            counts[2] += 1
            i += 1
            while text[i] != "'":
                i += 1
            i += 1
        elif c == "#":
            while text[i] != "\n":
                i += 1
        else:
            counts[3] += 1
            i += 1


def run(rounds):
    line = "total = total + price_of(item, 120) * 3 - rest[45] # the sum so far\nname = 'a quoted text'; i = i + 1\n"
    text = line * 20
    counts = [0, 0, 0, 0]
    for _ in range(rounds):
        scan(text, counts)
    for count in counts:
        print(count)


run(n)
