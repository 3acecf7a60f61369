n = 300000
# Short lines of four fields made by joining, split again, changed and joined anew.
def run(count)
  total = 0
  i = 0
  while i < count
    line = array_join([i, "name" + i % 100, "city" + i % 7, i * 37 % 1000], ",")
    fields = string_split(line, ",")
    amount = to_i(fields[3])
    if amount > 500
      fields[1] = string_upper(fields[1])
      amount = amount - 500
    end
    if fields[2] == "city3"
      fields[2] = "capital"
    end
    total = (total + amount + len(array_join(fields, "; "))) % 1000003
    i = i + 1
  end
  return total
end

puts(run(n))
