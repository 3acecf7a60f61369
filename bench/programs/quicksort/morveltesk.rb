n = 900000
# Quicksort written in the language: element loads, comparisons and swaps, moderate recursion.
def sort(a, low, high)
  i = low
  j = high
  pivot = a[math_floor((low + high) / 2)]
  while i <= j
    while a[i] < pivot
      i = i + 1
    end
    while pivot < a[j]
      j = j - 1
    end
    if i <= j
      held = a[i]
      a[i] = a[j]
      a[j] = held
      i = i + 1
      j = j - 1
    end
  end
  if low < j
    sort(a, low, j)
  end
  if i < high
    sort(a, i, high)
  end
end

def run(count)
  a = []
  seed = 42
  i = 0
  while i < count
    seed = seed * 16807 % 2147483647
    array_push(a, seed)
    i = i + 1
  end
  sort(a, 0, count - 1)
  sum = 0
  i = 0
  while i < count
    sum = (sum * 3 + a[i]) % 1000000007
    i = i + 1
  end
  return sum
end

puts(run(n))
