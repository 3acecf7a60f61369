n = 400000
# An array shuffled by random swaps, then put in order by heap sort.
def shuffle(a)
  seed = 29
  i = a.length - 1
  while i > 0
    seed = seed * 16807 % 2147483647
    j = seed % (i + 1)
    a[i], a[j] = a[j], a[i]
    i -= 1
  end
end

def sift_down(a, root, size)
  child = 2 * root + 1
  while child < size
    if child + 1 < size && a[child] < a[child + 1]
      child += 1
    end
    if a[root] >= a[child]
      return
    end
    a[root], a[child] = a[child], a[root]
    root = child
    child = 2 * root + 1
  end
end

def sort(a)
  size = a.length
  root = size / 2 - 1
  while root >= 0
    sift_down(a, root, size)
    root -= 1
  end
  last = size - 1
  while last > 0
    a[0], a[last] = a[last], a[0]
    sift_down(a, 0, last)
    last -= 1
  end
end

def checksum(a)
  sum = 0
  i = 0
  while i < a.length
    sum = (sum * 31 + a[i]) % 1000003
    i += 1
  end
  sum
end

a = (0...n).to_a
shuffle(a)
puts checksum(a)
sort(a)
puts checksum(a)
