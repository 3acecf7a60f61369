n = 110000
# An array used as a stack: bursts of pushes and pops.
def run(rounds)
  stack = []
  total = 0
  round = 0
  while round < rounds
    i = 0
    while i < 50
      array_push(stack, round + i)
      i = i + 1
    end
    i = 0
    while i < 49
      total = total + array_pop(stack) % 7
      i = i + 1
    end
    round = round + 1
  end
  puts(len(stack))
  puts(total)
end

run(n)
