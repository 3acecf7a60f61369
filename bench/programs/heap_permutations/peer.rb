n = 10
# Heap's algorithm: every permutation by one swap from the last, the array passed to small functions.
def swap(a, i, j)
  a[i], a[j] = a[j], a[i]
end

def visit(a, totals)
  totals[0] += 1
  totals[1] = (totals[1] * 31 + a[0] * 7 + a[1]) % 1000003
end

def permute(size, a, totals)
  if size == 1
    visit(a, totals)
    return
  end
  i = 1
  while i < size
    permute(size - 1, a, totals)
    if size % 2 == 0
      swap(a, i - 1, size - 1)
    else
      swap(a, 0, size - 1)
    end
    i += 1
  end
  permute(size - 1, a, totals)
end

totals = [0, 0]
permute(n, (0...n).to_a, totals)
puts totals[0]
puts totals[1]
