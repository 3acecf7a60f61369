n = 6000
# A line of fields split, joined and rewritten by the built-in string functions.
def run(rounds)
  fields = []
  i = 0
  while i < 400
    array_push(fields, "field" + i * 37 % 1000)
    i = i + 1
  end
  line = array_join(fields, ",")
  total = 0
  i = 0
  while i < rounds
    parts = string_split(line, ",")
    parts[i % 400] = "changed"
    joined = array_join(parts, ";")
    replaced = string_gsub(joined, "field1", "<one>")
    total = total + len(parts) + len(joined) + len(replaced)
    i = i + 1
  end
  return total
end

puts(run(n))
