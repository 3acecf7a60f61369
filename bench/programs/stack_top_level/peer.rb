n = 3500000
# A stack worked by the top level itself: a tree of numbers walked depth first.
stack = [1]
count = 0
sum = 0
while stack.length > 0
  node = stack.pop
  count += 1
  sum = (sum * 3 + node) % 1000003
  child = node * 2
  if child <= n
    stack.push(child)
    if child < n
      stack.push(child + 1)
    end
  end
end
puts count
puts sum
