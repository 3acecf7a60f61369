n = 1000
# An interpreter for a tiny language of a tape and eight commands: a chain of comparisons a step.
def find_jumps(code)
  jumps = Array.new(code.length, 0)
  open = []
  i = 0
  while i < code.length
    c = code[i]
    if c == "["
      open << i
    elsif c == "]"
      start = open.pop
      jumps[i] = start
      jumps[start] = i
    end
    i += 1
  end
  jumps
end

def execute(code, first)
  jumps = find_jumps(code)
  size = code.length
  tape = Array.new(64, 0)
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
      at += 1
    elsif c == "<"
      at -= 1
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
    pc += 1
  end
  sum
end

def run(rounds)
  code = "[>++++++++[>++++++++[>+++>+<<-]<-]>>.[-]>.[-]<<<<-]"
  total = 0
  i = 0
  while i < rounds
    total += execute(code, i % 9 + 1)
    i += 1
  end
  total
end

puts run(n)
