n = 9
# Takeuchi's function: calls whose arguments are calls.


def tak(x, y, z):
    if y >= x:
        return z
    return tak(tak(x - 1, y, z), tak(y - 1, z, x), tak(z - 1, x, y))


total = 0
for round_number in range(1, 5):
    total += tak(3 * n, 2 * n, n + round_number % 2)
print(total)
