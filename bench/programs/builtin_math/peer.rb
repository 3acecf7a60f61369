n = 6000000
# Calls of floor, square root, minimum and maximum in a loop.
def run(count)
  total = 0
  i = 0
  while i < count
    r = Math.sqrt(i)
    k = (r * 10).floor
    total = (total + [k, 5000].min + [i % 10, 5].max) % 1000003
    i += 1
  end
  total
end

puts run(n)
