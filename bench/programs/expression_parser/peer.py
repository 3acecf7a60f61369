n = 50000
# A recursive descent parser that evaluates arithmetic texts; the position is kept in an array.


def parse_number(text, state):
    value = 0
    c = text[state[0]]
    while c >= "0" and c <= "9":
        value = value * 10 + ord(c) - 48
        state[0] += 1
        c = text[state[0]]
    return value


def parse_factor(text, state):
    if text[state[0]] == "(":
        state[0] += 1
        value = parse_sum(text, state)
        state[0] += 1
        return value
    return parse_number(text, state)


def parse_product(text, state):
    value = parse_factor(text, state)
    while text[state[0]] == "*":
        state[0] += 1
        value = value * parse_factor(text, state) % 1000003
    return value


def parse_sum(text, state):
    value = parse_product(text, state)
    c = text[state[0]]
    while c == "+" or c == "-":
        state[0] += 1
        if c == "+":
            value += parse_product(text, state)
        else:
            value -= parse_product(text, state)
        c = text[state[0]]
    return value


def run(rounds):
    text = "12+34*(56-7)+(8*(9+10)-11)*2+345*(6+(7-(1+2)))-78*9+(10+(20-(30-(40+5))))$"
    total = 0
    for i in range(rounds):
        total += parse_sum(text, [i % 3])
    return total


print(run(n))
