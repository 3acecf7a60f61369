n = 1700000
# Small functions that take arrays and give back numbers or new arrays: a point turned around an axis.
def dot(a, b)
  a[0] * b[0] + a[1] * b[1] + a[2] * b[2]
end

def cross(a, b)
  [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]]
end

def add_scaled(a, b, factor)
  a[0] += b[0] * factor
  a[1] += b[1] * factor
  a[2] += b[2] * factor
end

def scaled(a, factor)
  [a[0] * factor, a[1] * factor, a[2] * factor]
end

def run(steps)
  axis = [0.48, 0.6, 0.64]
  point = [1.0, 0.0, 0.0]
  sum = 0.0
  i = 0
  while i < steps
    add_scaled(point, cross(axis, point), 0.01)
    point = scaled(point, 1.0 / Math.sqrt(dot(point, point)))
    sum += point[2]
    i += 1
  end
  (sum * 1000).floor
end

puts run(n)
