n = 8000
# Bubble sort: neighbours compared and swapped.
def sort(a)
  last = a.length - 1
  while last > 0
    i = 0
    while i < last
      if a[i] > a[i + 1]
        a[i], a[i + 1] = a[i + 1], a[i]
      end
      i += 1
    end
    last -= 1
  end
end

def run(count)
  a = []
  seed = 23
  i = 0
  while i < count
    seed = seed * 16807 % 2147483647
    a << seed
    i += 1
  end
  sort(a)
  sum = 0
  i = 0
  while i < count
    sum = (sum * 3 + a[i]) % 1000000007
    i += 1
  end
  sum
end

puts run(n)
