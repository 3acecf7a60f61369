local n = 1000
-- An interpreter for a tiny language of a tape and eight commands: a chain of comparisons a step.
local function find_jumps(code)
  local jumps = {}
  for i = 1, #code do
    jumps[i] = 0
  end
  local open = {}
  for i = 1, #code do
    local c = code:sub(i, i)
    if c == "[" then
      open[#open + 1] = i
    elseif c == "]" then
      local start = table.remove(open)
      jumps[i] = start
      jumps[start] = i
    end
  end
  return jumps
end

local function execute(code, first)
  local sub = string.sub
  local jumps = find_jumps(code)
  local size = #code
  local tape = {}
  for i = 1, 64 do
    tape[i] = 0
  end
  tape[1] = first
  local at = 1
  local sum = 0
  local pc = 1
  while pc <= size do
    local c = sub(code, pc, pc)
    if c == "+" then
      tape[at] = (tape[at] + 1) % 256
    elseif c == "-" then
      tape[at] = (tape[at] + 255) % 256
    elseif c == ">" then
      at = at + 1
    elseif c == "<" then
      at = at - 1
    elseif c == "[" then
      if tape[at] == 0 then
        pc = jumps[pc]
      end
    elseif c == "]" then
      if tape[at] ~= 0 then
        pc = jumps[pc]
      end
    elseif c == "." then
      sum = (sum * 31 + tape[at]) % 1000003
    end
    pc = pc + 1
  end
  return sum
end

local function run(rounds)
  local code = "[>++++++++[>++++++++[>+++>+<<-]<-]>>.[-]>.[-]<<<<-]"
  local total = 0
  for i = 0, rounds - 1 do
    total = total + execute(code, i % 9 + 1)
  end
  return total
end

print(run(n))
