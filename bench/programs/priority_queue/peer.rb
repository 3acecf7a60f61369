n = 500000
# A binary heap of pairs [priority, item] in an array: the first taken out, a later one put in.
def sift_up(heap, at)
  entry = heap[at]
  while at > 0
    parent = (at - 1) / 2
    above = heap[parent]
    if above[0] <= entry[0]
      heap[at] = entry
      return
    end
    heap[at] = above
    at = parent
  end
  heap[0] = entry
end

def sift_down(heap, entry)
  size = heap.length
  at = 0
  child = 1
  while child < size
    if child + 1 < size && heap[child + 1][0] < heap[child][0]
      child += 1
    end
    below = heap[child]
    if below[0] >= entry[0]
      heap[at] = entry
      return
    end
    heap[at] = below
    at = child
    child = 2 * at + 1
  end
  heap[at] = entry
end

def push(heap, priority, item)
  heap << [priority, item]
  sift_up(heap, heap.length - 1)
end

def pop(heap)
  first = heap[0]
  last = heap.pop
  if heap.length > 0
    sift_down(heap, last)
  end
  first
end

def run(events)
  heap = []
  seed = 43
  i = 0
  while i < 2000
    seed = seed * 16807 % 2147483647
    push(heap, seed % 100000, i)
    i += 1
  end
  sum = 0
  while i < events
    event = pop(heap)
    sum = (sum * 31 + event[0] + event[1]) % 1000003
    seed = seed * 16807 % 2147483647
    push(heap, event[0] + seed % 100000, i)
    i += 1
  end
  while heap.length > 0
    sum = (sum * 31 + pop(heap)[1]) % 1000003
  end
  sum
end

puts run(n)
