n = 110000
# An array used as a stack: bursts of pushes and pops.


def run(rounds):
    stack = []
    total = 0
    for round_number in range(rounds):
        for i in range(50):
            stack.append(round_number + i)
        for _ in range(49):
            total += stack.pop() % 7
    print(len(stack))
    print(total)


run(n)
