n = 350000
# The built-in sort on arrays of integers and of strings.
def run(count)
  numbers = []
  words = []
  seed = 17
  i = 0
  while i < count
    seed = seed * 16807 % 2147483647
    array_push(numbers, seed)
    array_push(words, "k" + seed % 100000)
    i = i + 1
  end
  table_sort(numbers)
  table_sort(words)
  sum = 0
  i = 0
  while i < count
    sum = (sum * 3 + numbers[i] + len(words[i])) % 1000003
    i = i + 1
  end
  puts(sum)
  puts(words[0])
  puts(words[count - 1])
end

run(n)
