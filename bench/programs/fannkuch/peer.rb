n = 9
# Pancake flipping over all permutations: short runs of element swaps.
def fannkuch(size)
  start = (0...size).to_a
  work = Array.new(size, 0)
  count = Array.new(size + 1, 0)
  checksum = 0
  most = 0
  even = true
  r = size
  while true
    while r > 1
      count[r - 1] = r
      r -= 1
    end
    i = 0
    while i < size
      work[i] = start[i]
      i += 1
    end
    flips = 0
    first = work[0]
    while first > 0
      i = 0
      j = first
      while i < j
        work[i], work[j] = work[j], work[i]
        i += 1
        j -= 1
      end
      flips += 1
      first = work[0]
    end
    most = flips if flips > most
    if even
      checksum += flips
    else
      checksum -= flips
    end
    even = !even
    advancing = true
    while advancing
      if r == size
        return checksum, most
      end
      held = start[0]
      i = 0
      while i < r
        start[i] = start[i + 1]
        i += 1
      end
      start[r] = held
      count[r] -= 1
      if count[r] > 0
        advancing = false
      else
        r += 1
      end
    end
  end
end

checksum, most = fannkuch(n)
puts checksum
puts most
