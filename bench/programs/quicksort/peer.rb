n = 900000
# Quicksort written in the language: element loads, comparisons and swaps, moderate recursion.
def sort(a, low, high)
  i = low
  j = high
  pivot = a[(low + high) / 2]
  while i <= j
    while a[i] < pivot
      i += 1
    end
    while pivot < a[j]
      j -= 1
    end
    if i <= j
      a[i], a[j] = a[j], a[i]
      i += 1
      j -= 1
    end
  end
  sort(a, low, j) if low < j
  sort(a, i, high) if i < high
end

def run(count)
  a = []
  seed = 42
  i = 0
  while i < count
    seed = seed * 16807 % 2147483647
    a << seed
    i += 1
  end
  sort(a, 0, count - 1)
  sum = 0
  i = 0
  while i < count
    sum = (sum * 3 + a[i]) % 1000000007
    i += 1
  end
  sum
end

puts run(n)
