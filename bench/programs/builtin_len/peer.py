n = 24000000
# The length of an array and of a string asked for again and again.


def run(count):
    numbers = [1, 2, 3, 4, 5]
    text = "a text of thirty characters..."
    total = 0
    for _ in range(count):
        total = total + len(numbers) + len(text)
        if total > 100000:
            total -= 100000
    return total


print(run(n))
