n = 9
# Takeuchi's function: calls whose arguments are calls.
def tak(x, y, z)
  if y >= x
    return z
  end
  return tak(tak(x - 1, y, z), tak(y - 1, z, x), tak(z - 1, x, y))
end

total = 0
round = 1
while round <= 4
  total = total + tak(3 * n, 2 * n, n + round % 2)
  round = round + 1
end
puts(total)
