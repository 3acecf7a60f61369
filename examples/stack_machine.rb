# A toy computer: an assembler that translates text into instructions, and a machine that runs them.
# The machine has a stack of numbers, named variables and jumps.

# Each line holds one instruction: an operation and an optional operand. ";" begins a comment,
# and a word that ends with ":" is a label. The result is an array of [operation, operand].
def assemble(source)
  lines = string_split(source, "\n")
  code = []
  labels = map_new()
  i = 0
  while i < len(lines)
    text = string_strip(string_split(lines[i], ";")[0])
    if string_end_with?(text, ":")
      labels[string_sub(text, 1, -2)] = len(code)
    elsif text != ""
      parts = string_split(text, " ", 2)
      # Indexing beyond the end of the array gives nil, for no operand.
      array_push(code, [parts[0], parts[1]])
    end
    i = i + 1
  end
  # Now that all labels are known, jumps get their targets.
  i = 0
  while i < len(code)
    instruction = code[i]
    if string_start_with?(instruction[0], "jump")
      if not table_has_key(labels, instruction[1])
        error("unknown label: " + instruction[1])
      end
      instruction[1] = labels[instruction[1]]
    end
    i = i + 1
  end
  return code
end

# The binary operations.
def plus(a, b)
  return a + b
end

def minus(a, b)
  return a - b
end

def times(a, b)
  return a * b
end

def remainder(a, b)
  return a % b
end

operations = map_new()
operations["add"] = plus
operations["sub"] = minus
operations["mul"] = times
operations["mod"] = remainder

def run(code, limit)
  stack = []
  variables = map_new()
  at = 0
  steps = 0
  while at < len(code)
    steps = steps + 1
    if steps > limit
      error("stopped after " + limit + " steps")
    end
    name = code[at][0]
    operand = code[at][1]
    at = at + 1
    if name == "push"
      array_push(stack, to_i(operand))
    elsif name == "load"
      array_push(stack, table_get(variables, operand, 0))
    elsif name == "store"
      variables[operand] = array_pop(stack)
    elsif name == "print"
      puts(array_pop(stack))
    elsif name == "jump"
      at = operand
    elsif name == "jump_if_zero"
      if array_pop(stack) == 0
        at = operand
      end
    elsif table_has_key(operations, name)
      right = array_pop(stack)
      left = array_pop(stack)
      # The result of a lookup can be called at once.
      array_push(stack, operations[name](left, right))
    else
      error("unknown instruction: " + name)
    end
  end
  return steps
end

# Reports a failure of either step instead of stopping.
def try(title, source, limit)
  puts(title)
  code = pcall(assemble, source)
  if len(code) == 3
    puts("  does not assemble: " + code[2])
    return
  end
  steps = pcall(run, code[1], limit)
  if len(steps) == 3
    puts("  failed: " + steps[2])
  else
    puts("  done in " + steps[1] + " steps")
  end
end

factorial = "push 1\nstore result\npush 10\nstore n\n"
factorial = factorial + "again:\nload n\njump_if_zero done\n"
factorial = factorial + "load result\nload n\nmul\nstore result\n"
factorial = factorial + "load n\npush 1\nsub\nstore n\njump again\n"
factorial = factorial + "done:\nload result\nprint ; shows 3628800\n"

divisor = "push 1071\nstore a\npush 462\nstore b\n"
divisor = divisor + "again:\nload b\njump_if_zero done\n"
divisor = divisor + "load a\nload b\nmod\nload b\nstore a\nstore b\njump again\n"
divisor = divisor + "done:\nload a\nprint"

try("The factorial of 10:", factorial, 1000)
try("The greatest common divisor of 1071 and 462:", divisor, 1000)
try("A loop without an end:", "again:\njump again", 50)
try("A missing label:", "jump nowhere", 50)
try("A division by zero:", "push 1\npush 0\nmod", 50)
try("A typing error:", "push 1\npirnt", 50)
