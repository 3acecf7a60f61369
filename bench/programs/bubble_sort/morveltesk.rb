n = 8000
# Bubble sort: neighbours compared and swapped.
def sort(a)
  last = len(a) - 1
  while last > 0
    i = 0
    while i < last
      if a[i] > a[i + 1]
        held = a[i]
        a[i] = a[i + 1]
        a[i + 1] = held
      end
      i = i + 1
    end
    last = last - 1
  end
end

def run(count)
  a = []
  seed = 23
  i = 0
  while i < count
    seed = seed * 16807 % 2147483647
    array_push(a, seed)
    i = i + 1
  end
  sort(a)
  sum = 0
  i = 0
  while i < count
    sum = (sum * 3 + a[i]) % 1000000007
    i = i + 1
  end
  return sum
end

puts(run(n))
