n = 1000
# An interpreter for a tiny language of a tape and eight commands: a chain of comparisons a step.


def find_jumps(code):
    jumps = [0] * len(code)
    open_at = []
    for i in range(len(code)):
        c = code[i]
        if c == "[":
            open_at.append(i)
        elif c == "]":
            start = open_at.pop()
            jumps[i] = start
            jumps[start] = i
    return jumps


def execute(code, first):
    jumps = find_jumps(code)
    size = len(code)
    tape = [0] * 64
    tape[0] = first
    at = 0
    total = 0
    pc = 0
    while pc < size:
        c = code[pc]
        if c == "+":
            tape[at] = (tape[at] + 1) % 256
        elif c == "-":
            tape[at] = (tape[at] + 255) % 256
        elif c == ">":
            at += 1
        elif c == "<":
            at -= 1
        elif c == "[":
            if tape[at] == 0:
                pc = jumps[pc]
        elif c == "]":
            if tape[at] != 0:
                pc = jumps[pc]
        elif c == ".":
            total = (total * 31 + tape[at]) % 1000003
        pc += 1
    return total


def run(rounds):
    code = "[>++++++++[>++++++++[>+++>+<<-]<-]>>.[-]>.[-]<<<<-]"
    total = 0
    for i in range(rounds):
        total += execute(code, i % 9 + 1)
    return total


print(run(n))
