n = 24000000
# A while loop over locals of a function: remainder, equality, branches, sums.
def run(limit)
  i = 0
  total = 0
  while i < limit
    if i % 3 == 0
      total += i
    elsif i % 5 == 0
      total -= 1
    else
      total += 2
    end
    i += 1
  end
  total
end

puts run(n)
