n = 6000
# A line of fields split, joined and rewritten by the built-in string functions.


def run(rounds):
    fields = []
    for i in range(400):
        fields.append("field" + str(i * 37 % 1000))
    line = ",".join(fields)
    total = 0
    for i in range(rounds):
        parts = line.split(",")
        parts[i % 400] = "changed"
        joined = ";".join(parts)
        replaced = joined.replace("field1", "<one>")
        total += len(parts) + len(joined) + len(replaced)
    return total


print(run(n))
