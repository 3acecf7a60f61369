n = 3500000
# A stack worked by the top level itself: a tree of numbers walked depth first.
stack = [1]
count = 0
sum = 0
while len(stack) > 0
  node = array_pop(stack)
  count = count + 1
  sum = (sum * 3 + node) % 1000003
  child = node * 2
  if child <= n
    array_push(stack, child)
    if child < n
      array_push(stack, child + 1)
    end
  end
end
puts(count)
puts(sum)
