n = 1000000
# Lines made by the format function from integers, strings and floats.
def run(count)
  names = ["anna", "bert", "carol", "dan"]
  total = 0
  last = ""
  i = 0
  while i < count
    last = format("%s has %d of %d items at %g", names[i % 4], i % 1000, count, i % 8 * 0.5)
    total += last.length
    i += 1
  end
  puts total
  puts last
end

run(n)
