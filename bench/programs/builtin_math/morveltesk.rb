n = 6000000
# Calls of floor, square root, minimum and maximum in a loop.
def run(count)
  total = 0
  i = 0
  while i < count
    r = math_sqrt(i)
    k = math_floor(r * 10)
    total = (total + math_min(k, 5000) + math_max(i % 10, 5)) % 1000003
    i = i + 1
  end
  return total
end

puts(run(n))
