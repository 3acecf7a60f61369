n = 10000
# A text turned into an array of byte values, then hashed.


def hash_bytes(text):
    data = list(text.encode())
    h = 7
    for i in range(len(data)):
        h = (h * 31 + data[i]) % 16777213
    return h


def run(rounds):
    text = "pack my box with five dozen liquor jugs; " * 90
    total = 0
    for i in range(rounds):
        total = (total + hash_bytes(text) + i) % 1000003
    return total


print(run(n))
