n = 1000
# An interpreter for a tiny language of a tape and eight commands: a chain of comparisons a step.
def find_jumps(code)
  jumps = array_new(len(code), 0)
  open = []
  i = 0
  while i < len(code)
    c = code[i]
    if c == "["
      array_push(open, i)
    elsif c == "]"
      start = array_pop(open)
      jumps[i] = start
      jumps[start] = i
    end
    i = i + 1
  end
  return jumps
end

def execute(code, first)
  jumps = find_jumps(code)
  size = len(code)
  tape = array_new(64, 0)
  tape[0] = first
  at = 0
  sum = 0
  pc = 0
  while pc < size
    c = code[pc]
    if c == "+"
      tape[at] = (tape[at] + 1) % 256
    elsif c == "-"
      tape[at] = (tape[at] + 255) % 256
    elsif c == ">"
      at = at + 1
    elsif c == "<"
      at = at - 1
    elsif c == "["
      if tape[at] == 0
        pc = jumps[pc]
      end
    elsif c == "]"
      if tape[at] != 0
        pc = jumps[pc]
      end
    elsif c == "."
      sum = (sum * 31 + tape[at]) % 1000003
    end
    pc = pc + 1
  end
  return sum
end

def run(rounds)
  code = "[>++++++++[>++++++++[>+++>+<<-]<-]>>.[-]>.[-]<<<<-]"
  total = 0
  i = 0
  while i < rounds
    total = total + execute(code, i % 9 + 1)
    i = i + 1
  end
  return total
end

puts(run(n))
