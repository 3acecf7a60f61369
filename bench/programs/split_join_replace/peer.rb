n = 6000
# A line of fields split, joined and rewritten by the built-in string functions.
def run(rounds)
  fields = []
  i = 0
  while i < 400
    fields << "field#{i * 37 % 1000}"
    i += 1
  end
  line = fields.join(",")
  total = 0
  i = 0
  while i < rounds
    parts = line.split(",")
    parts[i % 400] = "changed"
    joined = parts.join(";")
    replaced = joined.gsub("field1", "<one>")
    total += parts.length + joined.length + replaced.length
    i += 1
  end
  total
end

puts run(n)
