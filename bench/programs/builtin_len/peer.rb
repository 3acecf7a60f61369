n = 24000000
# The length of an array and of a string asked for again and again.
def run(count)
  list = [1, 2, 3, 4, 5]
  text = "a text of thirty characters..."
  total = 0
  i = 0
  while i < count
    total = total + list.length + text.length
    if total > 100000
      total -= 100000
    end
    i += 1
  end
  total
end

puts run(n)
