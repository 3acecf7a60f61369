n = 4000000
# Sieve of Eratosthenes: loads and stores of array elements with a stride.
def run(limit)
  composite = array_new(limit + 1, false)
  count = 0
  sum = 0
  i = 2
  while i <= limit
    if !composite[i]
      count = count + 1
      sum = sum + i
      j = i * i
      while j <= limit
        composite[j] = true
        j = j + i
      end
    end
    i = i + 1
  end
  puts(count)
  puts(sum)
end

run(n)
