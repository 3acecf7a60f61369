n = 1000000
# Lines made by the format function from integers, strings and floats.
def run(count)
  names = ["anna", "bert", "carol", "dan"]
  total = 0
  last = ""
  i = 0
  while i < count
    last = string_format("%s has %d of %d items at %f", names[i % 4], i % 1000, count, i % 8 * 0.5)
    total = total + len(last)
    i = i + 1
  end
  puts(total)
  puts(last)
end

run(n)
