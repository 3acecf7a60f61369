n = 1500000
# A queue worked by the top level itself: tasks taken from the front of a short array, put back at its end.
queue = []
for i in range(32):
    queue.append([i, i * 7 % 11 + 1])
total = 0
for i in range(32, n):
    task = queue.pop(0)
    left = task[1] - 1
    total = (total * 3 + task[0] + left) % 1000003
    if left > 0:
        task[1] = left
        queue.append(task)
    else:
        queue.append([i, i % 9 + 1])
print(len(queue))
print(total)
