n = 9000000
# Short substrings cut from a text and compared.
def run(count)
  text = "the rain in spain stays mainly in the plain"
  size = len(text)
  hits = 0
  total = 0
  i = 0
  while i < count
    at = i % size + 1
    part = string_sub(text, at, at + 2)
    if part == "ain"
      hits = hits + 1
    end
    total = total + len(part)
    i = i + 1
  end
  puts(hits)
  puts(total)
end

run(n)
