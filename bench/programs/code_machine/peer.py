n = 400000
# An interpreter's loop over an array of codes: an operation and two operands each, registers in an array.
# The code adds up the greatest common divisors of 360360 and every number up to n.


def execute(code, registers):
    pc = 0
    while True:
        operation = code[pc]
        x = code[pc + 1]
        y = code[pc + 2]
        pc += 3
        if operation == 1:
            registers[x] = registers[y]
        elif operation == 2:
            registers[x] %= registers[y]
        elif operation == 3:
            if registers[x] == 0:
                pc = y
        elif operation == 4:
            pc = x
        elif operation == 5:
            registers[x] += registers[y]
        elif operation == 6:
            registers[x] -= y
        else:
            return registers[x]


code = [
    3, 0, 36,
    1, 2, 0, 1, 3, 4,
    3, 2, 27, 1, 5, 3, 2, 5, 2, 1, 3, 2, 1, 2, 5, 4, 9, 0,
    5, 1, 3, 6, 0, 1, 4, 0, 0,
    0, 1, 0,
]
print(execute(code, [n, 0, 0, 0, 360360, 0]))
