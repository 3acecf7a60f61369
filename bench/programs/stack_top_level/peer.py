n = 3500000
# A stack worked by the top level itself: a tree of numbers walked depth first.
stack = [1]
count = 0
total = 0
while len(stack) > 0:
    node = stack.pop()
    count += 1
    total = (total * 3 + node) % 1000003
    child = node * 2
    if child <= n:
        stack.append(child)
        if child < n:
            stack.append(child + 1)
print(count)
print(total)
