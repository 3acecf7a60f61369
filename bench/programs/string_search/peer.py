n = 120000
# Words looked for, tested and changed in case and ends by the built-in string functions.


def run(rounds):
    text = "all work and no play makes a dull day " * 40 + "NEEDLE at the end"
    needles = ["dull", "NEEDLE", "missing", "end"]
    total = 0
    for i in range(rounds):
        needle = needles[i % 4]
        place = text.find(needle)
        if place >= 0:
            total += place + 1
        if "day NEEDLE" in text:
            total += 1
        low = text.lower()
        if low.endswith("needle at the end"):
            total += 2
        total += len(("   " + needle + " ").strip())
        total += len(needle.upper()) + len(low[::-1])
    return total


print(run(n))
