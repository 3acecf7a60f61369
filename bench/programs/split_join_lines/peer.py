n = 300000
# Short lines of four fields made by joining, split again, changed and joined anew.


def run(count):
    total = 0
    for i in range(count):
        line = ",".join([str(i), f"name{i % 100}", f"city{i % 7}", str(i * 37 % 1000)])
        fields = line.split(",")
        amount = int(fields[3])
        if amount > 500:
            fields[1] = fields[1].upper()
            amount -= 500
        if fields[2] == "city3":
            fields[2] = "capital"
        total = (total + amount + len("; ".join(fields))) % 1000003
    return total


print(run(n))
