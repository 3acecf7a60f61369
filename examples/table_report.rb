# Formats a table: text aligned left, numbers aligned right, money with two decimals.

# Pads a string on the right.
def left(text, width)
  return text + string_rep(" ", width - len(text))
end

# Pads a string on the left.
def right(text, width)
  return string_rep(" ", width - len(text)) + text
end

# An amount in cents as text: 1234567 is "12,345.67".
# "/" always gives a float, so math_floor takes the whole part.
def money(cents)
  digits = to_s(math_floor(cents / 100))
  grouped = ""
  while len(digits) > 3
    grouped = "," + string_sub(digits, -3) + grouped
    digits = string_sub(digits, 1, -4)
  end
  rest = to_s(cents % 100)
  return digits + grouped + "." + string_rep("0", 2 - len(rest)) + rest
end

# One line of the table.
def row(name, amount, price, total)
  return left(name, 16) + right(to_s(amount), 6) + right(price, 12) + right(total, 14)
end

# The goods: name, quantity, unit price in cents.
goods = []
array_push(goods, ["Paper, A4", 120, 399])
array_push(goods, ["Pencils", 1000, 45])
array_push(goods, ["Staplers", 12, 1250])
array_push(goods, ["Printers", 3, 24999])
array_push(goods, ["Desks", 25, 31900])

line = string_rep("-", 48)
puts(row("Article", "Pcs", "Price", "Total"))
puts(line)

sum = 0
pieces = 0
i = 0
while i < len(goods)
  item = goods[i]
  total = item[1] * item[2]
  sum = sum + total
  pieces = pieces + item[1]
  puts(row(item[0], item[1], money(item[2]), money(total)))
  i = i + 1
end

puts(line)
puts(row("Sum", pieces, "", money(sum)))
puts()
puts("Dearest articles first:")

# A selection sort by total, which swaps whole rows.
def sort_by_total(rows)
  i = 0
  while i < len(rows)
    best = i
    j = i + 1
    while j < len(rows)
      if rows[j][1] * rows[j][2] > rows[best][1] * rows[best][2]
        best = j
      end
      j = j + 1
    end
    swapped = rows[i]
    rows[i] = rows[best]
    rows[best] = swapped
    i = i + 1
  end
end

sort_by_total(goods)
i = 0
while i < len(goods)
  share = math_floor(goods[i][1] * goods[i][2] * 100 / sum + 0.5)
  puts(right(to_s(i + 1), 3) + ". " + left(goods[i][0], 12) + right(to_s(share), 4) + " %")
  i = i + 1
end
