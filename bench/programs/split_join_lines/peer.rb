n = 300000
# Short lines of four fields made by joining, split again, changed and joined anew.
def run(count)
  total = 0
  i = 0
  while i < count
    line = [i, "name#{i % 100}", "city#{i % 7}", i * 37 % 1000].join(",")
    fields = line.split(",")
    amount = fields[3].to_i
    if amount > 500
      fields[1] = fields[1].upcase
      amount -= 500
    end
    if fields[2] == "city3"
      fields[2] = "capital"
    end
    total = (total + amount + fields.join("; ").length) % 1000003
    i += 1
  end
  total
end

puts run(n)
