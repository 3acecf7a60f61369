n = 1000
# Escape times over a grid of points: float arithmetic on locals in a tight loop.
def escape(cr, ci, limit)
  zr = 0.0
  zi = 0.0
  k = 0
  while k < limit
    zr2 = zr * zr
    zi2 = zi * zi
    if zr2 + zi2 > 4.0
      return k
    end
    zi = 2.0 * zr * zi + ci
    zr = zr2 - zi2 + cr
    k = k + 1
  end
  return limit
end

def run(size)
  total = 0
  y = 0
  while y < size
    ci = 2.0 * y / size - 1.0
    x = 0
    while x < size
      total = total + escape(3.0 * x / size - 2.0, ci, 50)
      x = x + 1
    end
    y = y + 1
  end
  return total
end

puts(run(n))
