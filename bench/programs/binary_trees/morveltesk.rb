n = 16
# Complete binary trees built, counted and dropped: many small arrays.
def build(depth)
  if depth == 0
    return [nil, nil]
  end
  return [build(depth - 1), build(depth - 1)]
end

def count(node)
  left = node[0]
  if left == nil
    return 1
  end
  return 1 + count(left) + count(node[1])
end

def run(depth)
  kept = build(depth)
  total = 0
  round = 0
  while round < 20
    total = total + count(build(depth - round % 4))
    round = round + 1
  end
  return total + count(kept)
end

puts(run(n))
