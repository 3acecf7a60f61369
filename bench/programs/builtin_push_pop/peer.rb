n = 110000
# An array used as a stack: bursts of pushes and pops.
def run(rounds)
  stack = []
  total = 0
  round = 0
  while round < rounds
    i = 0
    while i < 50
      stack.push(round + i)
      i += 1
    end
    i = 0
    while i < 49
      total += stack.pop % 7
      i += 1
    end
    round += 1
  end
  puts stack.length
  puts total
end

run(n)
