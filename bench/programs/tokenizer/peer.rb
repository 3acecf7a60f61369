n = 4000
# A lexer's scan: every byte of a text compared with one-byte literals, names, numbers and quoted texts skipped.
def scan(text, counts)
  size = text.length
  i = 0
  while i < size
    c = text[i]
    if c == " " || c == "\n"
      i += 1
    elsif (c >= "a" && c <= "z") || c == "_"
      counts[0] += 1
      while (c >= "a" && c <= "z") || c == "_"
        i += 1
        c = text[i]
      end
    elsif c >= "0" && c <= "9"
      counts[1] += 1
      while c >= "0" && c <= "9"
        i += 1
        c = text[i]
      end
    elsif c == "'"
      counts[2] += 1
      i += 1
      while text[i] != "'"
        i += 1
      end
      i += 1
    elsif c == "#"
      while text[i] != "\n"
        i += 1
      end
    else
      counts[3] += 1
      i += 1
    end
  end
end

def run(rounds)
  line = "total = total + price_of(item, 120) * 3 - rest[45] # the sum so far\nname = 'a quoted text'; i = i + 1\n"
  text = line * 20
  counts = [0, 0, 0, 0]
  i = 0
  while i < rounds
    scan(text, counts)
    i += 1
  end
  i = 0
  while i < 4
    puts counts[i]
    i += 1
  end
end

run(n)
