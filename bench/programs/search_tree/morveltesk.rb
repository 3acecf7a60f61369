n = 200000
# A binary search tree of nodes [key, left, right]: random keys put in, looked up and summed in order.
def insert(root, key)
  node = root
  while true
    side = 1
    if key == node[0]
      return false
    elsif key > node[0]
      side = 2
    end
    child = node[side]
    if child == nil
      node[side] = [key, nil, nil]
      return true
    end
    node = child
  end
end

def contains?(node, key)
  while node != nil
    if key == node[0]
      return true
    elsif key < node[0]
      node = node[1]
    else
      node = node[2]
    end
  end
  return false
end

def checksum(node, sum)
  if node == nil
    return sum
  end
  sum = checksum(node[1], sum)
  return checksum(node[2], (sum * 3 + node[0]) % 1000003)
end

def run(count)
  limit = count * 4
  root = [count * 2, nil, nil]
  size = 1
  seed = 47
  i = 0
  while i < count
    seed = seed * 16807 % 2147483647
    if insert(root, seed % limit)
      size = size + 1
    end
    i = i + 1
  end
  found = 0
  i = 0
  while i < limit
    if contains?(root, i)
      found = found + 1
    end
    i = i + 3
  end
  puts(size)
  puts(found)
  puts(checksum(root, 0))
end

run(n)
