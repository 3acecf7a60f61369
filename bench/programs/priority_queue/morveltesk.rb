n = 500000
# A binary heap of pairs [priority, item] in an array: the first taken out, a later one put in.
def sift_up(heap, at)
  entry = heap[at]
  while at > 0
    parent = math_floor((at - 1) / 2)
    above = heap[parent]
    if above[0] <= entry[0]
      heap[at] = entry
      return nil
    end
    heap[at] = above
    at = parent
  end
  heap[0] = entry
end

def sift_down(heap, entry)
  size = len(heap)
  at = 0
  child = 1
  while child < size
    if child + 1 < size
      if heap[child + 1][0] < heap[child][0]
        child = child + 1
      end
    end
    below = heap[child]
    if below[0] >= entry[0]
      heap[at] = entry
      return nil
    end
    heap[at] = below
    at = child
    child = 2 * at + 1
  end
  heap[at] = entry
end

def push(heap, priority, item)
  array_push(heap, [priority, item])
  sift_up(heap, len(heap) - 1)
end

def pop(heap)
  first = heap[0]
  last = array_pop(heap)
  if len(heap) > 0
    sift_down(heap, last)
  end
  return first
end

def run(events)
  heap = []
  seed = 43
  i = 0
  while i < 2000
    seed = seed * 16807 % 2147483647
    push(heap, seed % 100000, i)
    i = i + 1
  end
  sum = 0
  while i < events
    event = pop(heap)
    sum = (sum * 31 + event[0] + event[1]) % 1000003
    seed = seed * 16807 % 2147483647
    push(heap, event[0] + seed % 100000, i)
    i = i + 1
  end
  while len(heap) > 0
    sum = (sum * 31 + pop(heap)[1]) % 1000003
  end
  return sum
end

puts(run(n))
