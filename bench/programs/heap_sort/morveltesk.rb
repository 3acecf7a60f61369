n = 400000
# An array shuffled by random swaps, then put in order by heap sort.
def shuffle(a)
  seed = 29
  i = len(a) - 1
  while i > 0
    seed = seed * 16807 % 2147483647
    j = seed % (i + 1)
    held = a[i]
    a[i] = a[j]
    a[j] = held
    i = i - 1
  end
end

def sift_down(a, root, size)
  child = 2 * root + 1
  while child < size
    if child + 1 < size
      if a[child] < a[child + 1]
        child = child + 1
      end
    end
    if a[root] >= a[child]
      return nil
    end
    held = a[root]
    a[root] = a[child]
    a[child] = held
    root = child
    child = 2 * root + 1
  end
end

def sort(a)
  size = len(a)
  root = math_floor(size / 2) - 1
  while root >= 0
    sift_down(a, root, size)
    root = root - 1
  end
  last = size - 1
  while last > 0
    held = a[0]
    a[0] = a[last]
    a[last] = held
    sift_down(a, 0, last)
    last = last - 1
  end
end

def checksum(a)
  sum = 0
  i = 0
  while i < len(a)
    sum = (sum * 31 + a[i]) % 1000003
    i = i + 1
  end
  return sum
end

a = range(n)
shuffle(a)
puts(checksum(a))
sort(a)
puts(checksum(a))
