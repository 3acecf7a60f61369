n = 350000
# The built-in sort on arrays of integers and of strings.


def run(count):
    numbers = []
    words = []
    seed = 17
    for _ in range(count):
        seed = seed * 16807 % 2147483647
        numbers.append(seed)
        words.append("k" + str(seed % 100000))
    numbers.sort()
    words.sort()
    total = 0
    for i in range(count):
        total = (total * 3 + numbers[i] + len(words[i])) % 1000003
    print(total)
    print(words[0])
    print(words[count - 1])


run(n)
