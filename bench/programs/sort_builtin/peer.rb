n = 350000
# The built-in sort on arrays of integers and of strings.
def run(count)
  numbers = []
  words = []
  seed = 17
  i = 0
  while i < count
    seed = seed * 16807 % 2147483647
    numbers << seed
    words << "k#{seed % 100000}"
    i += 1
  end
  numbers.sort!
  words.sort!
  sum = 0
  i = 0
  while i < count
    sum = (sum * 3 + numbers[i] + words[i].length) % 1000003
    i += 1
  end
  puts sum
  puts words[0]
  puts words[count - 1]
end

run(n)
