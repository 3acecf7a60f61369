n = 1500000
# A queue worked by the top level itself: tasks taken from the front of a short array, put back at its end.
queue = []
i = 0
while i < 32
  queue << [i, i * 7 % 11 + 1]
  i += 1
end
sum = 0
while i < n
  task = queue.shift
  left = task[1] - 1
  sum = (sum * 3 + task[0] + left) % 1000003
  if left > 0
    task[1] = left
    queue << task
  else
    queue << [i, i % 9 + 1]
  end
  i += 1
end
puts queue.length
puts sum
