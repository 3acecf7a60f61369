n = 9000000
# Short substrings cut from a text and compared.
def run(count)
  text = "the rain in spain stays mainly in the plain"
  size = text.length
  hits = 0
  total = 0
  i = 0
  while i < count
    part = text[i % size, 3]
    if part == "ain"
      hits += 1
    end
    total += part.length
    i += 1
  end
  puts hits
  puts total
end

run(n)
