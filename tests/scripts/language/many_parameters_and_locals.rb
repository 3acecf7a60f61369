# More than sixteen locals, parameters included.
def sum(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t)
  u = a + b + c + d + e
  v = f + g + h + i + j
  w = k + l + m + n + o
  x = p + q + r + s + t
  if false then y = 1 end
  z = u + v + w + x
  return z + y
end
y = 1000
puts(sum(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20))
