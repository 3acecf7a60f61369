n = 9
# Pancake flipping over all permutations: short runs of element swaps.
def fannkuch(size)
  start = range(size)
  work = array_new(size, 0)
  count = array_new(size + 1, 0)
  checksum = 0
  most = 0
  even = true
  r = size
  while true
    while r > 1
      count[r - 1] = r
      r = r - 1
    end
    i = 0
    while i < size
      work[i] = start[i]
      i = i + 1
    end
    flips = 0
    first = work[0]
    while first > 0
      i = 0
      j = first
      while i < j
        held = work[i]
        work[i] = work[j]
        work[j] = held
        i = i + 1
        j = j - 1
      end
      flips = flips + 1
      first = work[0]
    end
    if flips > most
      most = flips
    end
    if even
      checksum = checksum + flips
    else
      checksum = checksum - flips
    end
    even = !even
    advancing = true
    while advancing
      if r == size
        return [checksum, most]
      end
      held = start[0]
      i = 0
      while i < r
        start[i] = start[i + 1]
        i = i + 1
      end
      start[r] = held
      count[r] = count[r] - 1
      if count[r] > 0
        advancing = false
      else
        r = r + 1
      end
    end
  end
end

result = fannkuch(n)
puts(result[0])
puts(result[1])
