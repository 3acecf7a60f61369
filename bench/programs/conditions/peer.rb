n = 6000000
# Conditions made of several comparisons: points in regions, leap years, kinds of triangles.
def region(x, y)
  if x >= 20 && x < 60 && y >= 30 && y < 80
    return 1
  end
  if x < 5 || x > 95 || y < 5 || y > 95
    return 2
  end
  if (x == y || x + y == 100) && !(x > 40 && x < 70)
    return 3
  end
  4
end

def triangle(a, b, c)
  if a + b <= c || b + c <= a || a + c <= b
    return 0
  elsif a == b && b == c
    return 3
  elsif a == b || b == c || a == c
    return 2
  end
  1
end

def run(count)
  total = 0
  leap = 0
  i = 0
  while i < count
    x = i % 101
    y = i % 97
    total += region(x, y) + triangle(x, y, i % 89)
    if i % 4 == 0 && (i % 100 != 0 || i % 400 == 0)
      leap += 1
    end
    i += 1
  end
  puts total
  puts leap
end

run(n)
