n = 6000000
# Conditions made of several comparisons: points in regions, leap years, kinds of triangles.
def region(x, y)
  if x >= 20 and x < 60 and y >= 30 and y < 80
    return 1
  end
  if x < 5 or x > 95 or y < 5 or y > 95
    return 2
  end
  if (x == y or x + y == 100) and not (x > 40 and x < 70)
    return 3
  end
  return 4
end

def triangle(a, b, c)
  if a + b <= c or b + c <= a or a + c <= b
    return 0
  elsif a == b and b == c
    return 3
  elsif a == b or b == c or a == c
    return 2
  end
  return 1
end

def run(count)
  total = 0
  leap = 0
  i = 0
  while i < count
    x = i % 101
    y = i % 97
    total = total + region(x, y) + triangle(x, y, i % 89)
    if i % 4 == 0 and (i % 100 != 0 or i % 400 == 0)
      leap = leap + 1
    end
    i = i + 1
  end
  puts(total)
  puts(leap)
end

run(n)
